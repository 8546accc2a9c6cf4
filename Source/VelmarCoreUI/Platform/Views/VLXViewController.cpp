#include <VelmarCoreUI/Platform/Views/VLXViewController.h>

#include <algorithm>
#include <array>
#include <cctype>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Views/Private/VLXLayoutGuideAccess.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXNavigationController.h>
#include <VelmarCoreUI/Platform/Views/VLXTabBarController.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {

constexpr const char* kDefaultSystemVersion = "17.0";

std::string& systemVersionStorage() {
    static std::string version = kDefaultSystemVersion;
    return version;
}

// Major, minor and patch; each part's leading digits, saturated well inside VLXInteger.
std::array<VLXInteger, 3> parseVersion(const std::string& text) {
    std::array<VLXInteger, 3> parts{0, 0, 0};
    std::size_t index = 0;
    for (std::size_t part = 0; part < parts.size() && index <= text.size(); ++part) {
        VLXInteger value = 0;
        while (index < text.size() && std::isdigit(static_cast<unsigned char>(text[index]))) {
            value = std::min<VLXInteger>(value * 10 + (text[index] - '0'), 1'000'000'000'000);
            ++index;
        }
        parts[part] = value;
        const std::size_t dot = text.find('.', index);
        if (dot == std::string::npos) {
            break;
        }
        index = dot + 1;
    }
    return parts;
}

}  // namespace

std::shared_ptr<VLXViewController> VLXViewController::create() {
    return makeInitialized<VLXViewController>();
}

VLXViewController::~VLXViewController() {
    for (const auto& child : m_children) {
        child->m_parent = nullptr;
    }
}

// --- view --------------------------------------------------------------------------------

const std::shared_ptr<VLXView>& VLXViewController::view() {
    if (m_view || m_loadingView) {
        return m_view;
    }
    m_loadingView = true;
    loadView();
    if (!m_view) {
        VLXViewController::loadView();
    }
    m_loadingView = false;
    viewDidLoad();
    return m_view;
}

void VLXViewController::setView(std::shared_ptr<VLXView> view) {
    if (view == m_view) {
        return;
    }
    m_view = std::move(view);
    // The legacy guides belong to the view they were made for.
    m_topLayoutGuide.reset();
    m_bottomLayoutGuide.reset();
}

void VLXViewController::loadView() {
    setView(VLXView::createWithFrame(VLXScreen::mainScreen()->bounds()));
}

void VLXViewController::viewDidLoad() {}

const std::shared_ptr<VLXLayoutGuide>& VLXViewController::topLayoutGuide() {
    if (!m_topLayoutGuide) {
        if (const auto& owner = view()) {
            m_topLayoutGuide = vlx::detail::LayoutGuideAccess::makeTopLayoutGuide(*owner);
        }
    }
    return m_topLayoutGuide;
}

const std::shared_ptr<VLXLayoutGuide>& VLXViewController::bottomLayoutGuide() {
    if (!m_bottomLayoutGuide) {
        if (const auto& owner = view()) {
            m_bottomLayoutGuide = vlx::detail::LayoutGuideAccess::makeBottomLayoutGuide(*owner);
        }
    }
    return m_bottomLayoutGuide;
}

// --- presentation ------------------------------------------------------------------------

bool VLXViewController::isAncestorOrPresenterOf(const VLXViewController& controller) const {
    // A controller has at most one link up: children cannot be presented and presented
    // controllers cannot become children, and neither link may close a loop.
    for (const VLXViewController* current = &controller; current;) {
        if (current == this) {
            return true;
        }
        current = current->m_parent ? current->m_parent : current->m_presenting.lock().get();
    }
    return false;
}

bool VLXViewController::presentViewController(std::shared_ptr<VLXViewController> viewController) {
    if (!viewController || viewController.get() == this || m_presented ||
        !viewController->m_presenting.expired() || viewController->m_parent ||
        viewController->isAncestorOrPresenterOf(*this)) {
        return false;
    }
    viewController->m_presenting = sharedFrom<VLXViewController>();
    m_presented = std::move(viewController);
    return true;
}

bool VLXViewController::dismissViewController() {
    for (VLXViewController* current = this; current; current = current->m_parent) {
        if (current->m_presented) {
            // Whatever the dismissed controller presents goes with it.
            std::shared_ptr<VLXViewController> dismissed = std::move(current->m_presented);
            while (dismissed) {
                dismissed->m_presenting.reset();
                dismissed = std::move(dismissed->m_presented);
            }
            return true;
        }
    }
    if (auto presenter = presentingViewController()) {
        return presenter->dismissViewController();
    }
    return false;
}

std::shared_ptr<VLXViewController> VLXViewController::presentedViewController() const {
    for (const VLXViewController* current = this; current; current = current->m_parent) {
        if (current->m_presented) {
            return current->m_presented;
        }
    }
    return nullptr;
}

std::shared_ptr<VLXViewController> VLXViewController::presentingViewController() const {
    for (const VLXViewController* current = this; current; current = current->m_parent) {
        if (auto presenter = current->m_presenting.lock()) {
            return presenter;
        }
    }
    return nullptr;
}

// --- containment -------------------------------------------------------------------------

bool VLXViewController::addChildViewController(std::shared_ptr<VLXViewController> child) {
    if (!child || child.get() == this) {
        return false;
    }
    if (child->m_parent == this) {
        return true;
    }
    if (!child->m_presenting.expired() || child->isAncestorOrPresenterOf(*this)) {
        return false;
    }
    if (child->m_parent) {
        child->m_parent->detachChild(*child);
    }
    child->m_parent = this;
    m_children.push_back(std::move(child));
    didChangeChildViewControllers();
    return true;
}

void VLXViewController::detachChild(VLXViewController& child) {
    auto found = std::find_if(m_children.begin(), m_children.end(),
                              [&](const auto& entry) { return entry.get() == &child; });
    if (found == m_children.end()) {
        return;
    }
    // Kept alive until the hook has run: the parent may have held the only reference.
    auto keep = std::move(*found);
    m_children.erase(found);
    keep->m_parent = nullptr;
    didChangeChildViewControllers();
}

void VLXViewController::removeFromParentViewController() {
    if (m_parent) {
        auto keep = weak_from_this().lock();
        m_parent->detachChild(*this);
    }
}

void VLXViewController::didChangeChildViewControllers() {}

VLXNavigationController* VLXViewController::navigationController() const {
    for (VLXViewController* current = m_parent; current; current = current->m_parent) {
        if (auto* navigation = dynamic_cast<VLXNavigationController*>(current)) {
            return navigation;
        }
    }
    return nullptr;
}

VLXTabBarController* VLXViewController::tabBarController() const {
    for (VLXViewController* current = m_parent; current; current = current->m_parent) {
        if (auto* tabBar = dynamic_cast<VLXTabBarController*>(current)) {
            return tabBar;
        }
    }
    return nullptr;
}

// --- system version ----------------------------------------------------------------------

void VLXViewController::setSystemVersion(std::string version) {
    systemVersionStorage() =
        version.empty() ? std::string(kDefaultSystemVersion) : std::move(version);
}

std::string VLXViewController::systemVersion() {
    return systemVersionStorage();
}

bool VLXViewController::isSystemVersionAtLeast(VLXInteger major, VLXInteger minor,
                                               VLXInteger patch) {
    const auto parts = parseVersion(systemVersionStorage());
    return parts >= std::array<VLXInteger, 3>{major, minor, patch};
}

VLXScopedSystemVersion::VLXScopedSystemVersion(std::string version)
    : m_previous(VLXViewController::systemVersion()) {
    VLXViewController::setSystemVersion(std::move(version));
}

VLXScopedSystemVersion::~VLXScopedSystemVersion() {
    VLXViewController::setSystemVersion(m_previous);
}
