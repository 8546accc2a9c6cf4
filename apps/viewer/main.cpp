// vlx-viewer: shows one interaction scene in an SDL window and turns the mouse and touch screen
// into touches, so a person can try the gestures by hand.
#include <SDL.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "Scenes.h"
#include "ViewerInput.h"

namespace {

struct Options {
    std::string scene = "scroll";
    bool list = false;
    int frames = 0;  // 0: run until closed
    std::string screenshot;
    double width = 360;
    double height = 480;
    double zoom = 1;
};

class Viewer {
public:
    Viewer(const Options& options, SDL_Window* window, SDL_Renderer* renderer)
        : m_options(options), m_window(window), m_renderer(renderer) {}
    ~Viewer() {
        if (m_texture) {
            SDL_DestroyTexture(m_texture);
        }
    }

    void show(std::size_t index) {
        const auto& names = interactionSceneNames();
        if (names.empty()) {
            return;
        }
        m_index = index % names.size();
        m_scene = makeInteractionScene(names[m_index], {m_options.width, m_options.height},
                                       m_options.zoom);
        m_input.setWindow(m_scene.window);
        m_input.setZoom(m_options.zoom);
        m_printed = 0;
        m_lastImage.reset();
        const std::string title = "vlx-viewer — " + std::to_string(m_index + 1) + "/" +
                                  std::to_string(names.size()) + " " + m_scene.title;
        SDL_SetWindowTitle(m_window, title.c_str());
        std::printf("scene %s: %s\n", m_scene.name.c_str(), m_scene.title.c_str());
        std::fflush(stdout);
    }

    // False when the viewer should close.
    bool handle(const SDL_Event& event) {
        if (event.type == SDL_QUIT) {
            return false;
        }
        if (event.type == SDL_KEYDOWN) {
            const SDL_Keycode key = event.key.keysym.sym;
            const std::size_t count = interactionSceneNames().size();
            if (key == SDLK_ESCAPE || key == SDLK_q) {
                return false;
            }
            if (key >= SDLK_1 && key <= SDLK_9 && static_cast<std::size_t>(key - SDLK_1) < count) {
                show(static_cast<std::size_t>(key - SDLK_1));
            } else if (key == SDLK_RIGHT) {
                show(m_index + 1);
            } else if (key == SDLK_LEFT) {
                show(m_index + count - 1);
            } else if (key == SDLK_r) {
                show(m_index);
            }
            return true;
        }
        m_input.handleEvent(event);
        return true;
    }

    // Renders one frame of the scene and presents it; the readback for a screenshot happens
    // before presenting, while the back buffer still holds the frame.
    bool frame(const std::string& screenshot) {
        printLog();
        auto image = m_scene.window ? m_scene.window->renderFrame() : nullptr;
        if (image && image != m_lastImage) {
            upload(*image);
            m_lastImage = image;
        }
        SDL_SetRenderDrawColor(m_renderer, 0, 0, 0, 255);
        SDL_RenderClear(m_renderer);
        if (m_texture) {
            SDL_RenderCopy(m_renderer, m_texture, nullptr, nullptr);
        }
        bool ok = true;
        if (!screenshot.empty()) {
            ok = writeScreenshot(screenshot);
        }
        SDL_RenderPresent(m_renderer);
        return ok;
    }

private:
    void upload(const VLXImage& image) {
        const int w = image.pixelWidth(), h = image.pixelHeight();
        if (w <= 0 || h <= 0) {
            return;
        }
        if (!m_texture || w != m_textureWidth || h != m_textureHeight) {
            if (m_texture) {
                SDL_DestroyTexture(m_texture);
            }
            // The image's words are premultiplied ARGB in native order, which is what SDL calls
            // ARGB8888; the window's background is opaque, so no blending is needed.
            m_texture = SDL_CreateTexture(m_renderer, SDL_PIXELFORMAT_ARGB8888,
                                          SDL_TEXTUREACCESS_STREAMING, w, h);
            m_textureWidth = w;
            m_textureHeight = h;
            if (!m_texture) {
                return;
            }
            SDL_SetTextureBlendMode(m_texture, SDL_BLENDMODE_NONE);
        }
        SDL_UpdateTexture(m_texture, nullptr, image.pixels().data(), w * 4);
    }

    bool writeScreenshot(const std::string& path) {
        int w = 0, h = 0;
        if (SDL_GetRendererOutputSize(m_renderer, &w, &h) != 0 || w <= 0 || h <= 0) {
            return false;
        }
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(w) * h);
        if (SDL_RenderReadPixels(m_renderer, nullptr, SDL_PIXELFORMAT_ARGB8888, pixels.data(),
                                 w * 4) != 0) {
            std::fprintf(stderr, "vlx-viewer: cannot read the frame back: %s\n", SDL_GetError());
            return false;
        }
        for (auto& p : pixels) {
            p |= 0xff000000u;  // the frame is opaque; some back buffers leave alpha at 0
        }
        auto image = VLXImage::imageWithPixels(w, h, std::move(pixels), m_options.zoom);
        return image && image->writePNG(path);
    }

    void printLog() {
        if (!m_scene.log) {
            return;
        }
        const auto& lines = m_scene.log->lines();
        // A folded line ("×3") is printed again when its count grows.
        if (m_printed > 0 && m_printed <= lines.size() && lines[m_printed - 1] != m_lastPrinted) {
            --m_printed;
        }
        for (; m_printed < lines.size(); ++m_printed) {
            std::printf("  %s\n", lines[m_printed].c_str());
            m_lastPrinted = lines[m_printed];
        }
        std::fflush(stdout);
    }

    const Options& m_options;
    SDL_Window* m_window;
    SDL_Renderer* m_renderer;
    SDL_Texture* m_texture = nullptr;
    int m_textureWidth = 0;
    int m_textureHeight = 0;
    InteractionScene m_scene;
    std::size_t m_index = 0;
    ViewerInput m_input;
    std::shared_ptr<VLXImage> m_lastImage;
    std::size_t m_printed = 0;
    std::string m_lastPrinted;
};

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app{"VelmarCoreUI viewer: try the interaction scenes with mouse or touch screen"};
    app.add_option("--scene", options.scene, "Scene to show first (see --list)");
    app.add_flag("--list", options.list, "Print the scene names and exit");
    app.add_option("--frames", options.frames, "Render this many frames, then exit")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--screenshot", options.screenshot, "Write the last frame as a PNG")
        ->needs("--frames");
    app.add_option("--width", options.width, "Window width in points")
        ->check(CLI::Range(160, 4096));
    app.add_option("--height", options.height, "Window height in points")
        ->check(CLI::Range(160, 4096));
    app.add_option("--zoom", options.zoom, "Pixels per point")->check(CLI::Range(1, 4));
    CLI11_PARSE(app, argc, argv);

    const auto& names = interactionSceneNames();
    if (options.list) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            std::printf("%zu %s\n", i + 1, names[i].c_str());
        }
        return 0;
    }
    const auto found = std::find(names.begin(), names.end(), options.scene);
    if (found == names.end()) {
        std::fprintf(stderr, "vlx-viewer: no scene named \"%s\" (see --list)\n",
                     options.scene.c_str());
        return 2;
    }

    SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");  // touches arrive as fingers only
    SDL_SetHint(SDL_HINT_MOUSE_TOUCH_EVENTS, "0");
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        std::fprintf(stderr, "vlx-viewer: SDL_Init failed: %s\n", SDL_GetError());
        return 1;
    }
    const int pixelWidth = static_cast<int>(std::lround(options.width * options.zoom));
    const int pixelHeight = static_cast<int>(std::lround(options.height * options.zoom));
    SDL_Window* window = SDL_CreateWindow("vlx-viewer", SDL_WINDOWPOS_CENTERED,
                                          SDL_WINDOWPOS_CENTERED, pixelWidth, pixelHeight, 0);
    SDL_Renderer* renderer = window ? SDL_CreateRenderer(window, -1, 0) : nullptr;
    if (window && !renderer) {
        renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE);
    }
    if (!window || !renderer) {
        std::fprintf(stderr, "vlx-viewer: cannot open a window: %s\n", SDL_GetError());
        if (window) {
            SDL_DestroyWindow(window);
        }
        SDL_Quit();
        return 1;
    }

    int status = 0;
    {
        Viewer viewer(options, window, renderer);
        viewer.show(static_cast<std::size_t>(found - names.begin()));
        bool running = true;
        for (int frame = 0; running; ++frame) {
            SDL_Event event;
            while (SDL_PollEvent(&event)) {
                running = viewer.handle(event) && running;
            }
            const bool last = options.frames > 0 && frame + 1 >= options.frames;
            if (!viewer.frame(last ? options.screenshot : std::string())) {
                std::fprintf(stderr, "vlx-viewer: cannot write %s\n", options.screenshot.c_str());
                status = 1;
            }
            if (last) {
                break;
            }
            SDL_Delay(16);  // about 60 frames a second; the run loop works on the real clock
        }
    }
    SDL_DestroyRenderer(renderer);
    SDL_DestroyWindow(window);
    SDL_Quit();
    return status;
}
