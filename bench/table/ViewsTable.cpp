// vlx-bench-views-table: view layout and label redraw in a window against the plain frame, one
// line per case: "case <name> ours_ms <x> baseline_ms <y> ratio <r>".
//
//   layout-1000        a window of 1 000 labelled views (a cell view with a label that its
//                      layoutSubviews places), all marked for layout, laid out and composited
//                      (`snapshot`) / the same frame composited with nothing marked.
//   label-text-change  one label's text changed and the next frame rendered (`renderFrame`) /
//                      the full first frame of a new window of the same views (every label laid
//                      out and rasterised).
//
// The window draws at one pixel per point (1 000 × 800 px).
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include "TableCase.h"

namespace {

constexpr int kColumns = 25;
constexpr int kRows = 40;
constexpr double kCellWidth = 40;
constexpr double kCellHeight = 20;

// A view holding one label, inset by one point, placed by layout.
class LabelledView : public VLXView {
public:
    static std::shared_ptr<LabelledView> create(const VLXRect& frame, const std::string& text) {
        auto view = makeWithFrame<LabelledView>(frame);
        view->m_label = VLXLabel::create();
        view->m_label->setFont(VLXFont::systemFontOfSize(9));
        view->m_label->setText(text);
        view->addSubview(view->m_label);
        return view;
    }
    void layoutSubviews() override {
        VLXView::layoutSubviews();
        const VLXRect b = bounds();
        m_label->setFrame({{1, 1}, {b.size.width - 2, b.size.height - 2}});
    }
    VLXLabel& label() const { return *m_label; }

private:
    std::shared_ptr<VLXLabel> m_label;
};

struct Scene {
    std::shared_ptr<VLXWindow> window;
    std::vector<std::shared_ptr<LabelledView>> cells;
};

Scene makeScene() {
    Scene scene;
    scene.window =
        VLXWindow::createWithFrame({{0, 0}, {kColumns * kCellWidth, kRows * kCellHeight}});
    auto screen = VLXScreen::create();
    screen->setScale(1);
    scene.window->setScreen(screen);
    scene.window->setBackgroundColor(VLXColor::whiteColor());
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            auto cell = LabelledView::create(
                {{column * kCellWidth, row * kCellHeight}, {kCellWidth, kCellHeight}},
                "Item " + std::to_string(row * kColumns + column));
            scene.window->addSubview(cell);
            scene.cells.push_back(cell);
        }
    }
    return scene;
}

}  // namespace

int main() {
    // layout-1000.
    {
        Scene scene = makeScene();
        scene.window->renderFrame();  // the first frame: every label drawn once
        const double ours = table::bestMilliseconds(
            [&] {
                for (auto& cell : scene.cells) {
                    cell->setNeedsLayout();
                }
            },
            [&] { scene.window->snapshot(); }, 15);
        const double baseline =
            table::bestMilliseconds([] {}, [&] { scene.window->snapshot(); }, 15);
        table::printCase("layout-1000", ours, baseline);
    }
    // label-text-change.
    {
        Scene scene = makeScene();
        scene.window->renderFrame();
        int counter = 0;
        const double ours = table::bestMilliseconds(
            [&] { scene.cells[517]->label().setText("Changed " + std::to_string(++counter)); },
            [&] { scene.window->renderFrame(); }, 15);
        std::vector<Scene> fresh;
        const double baseline = table::bestMilliseconds(
            [&] { fresh.push_back(makeScene()); }, [&] { fresh.back().window->renderFrame(); }, 3);
        table::printCase("label-text-change", ours, baseline);
    }
    return 0;
}
