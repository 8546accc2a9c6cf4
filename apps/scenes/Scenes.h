#pragma once

// The interactive scenes that the viewer lets a person touch and the gallery plays back: each
// is a window with one kind of gesture in it and a log of what its recognisers reported.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXTouchSynthesizer;
class VLXWindow;

/// What the recognisers of a scene said, oldest first ("long press: began"). Runs of the same
/// line (a drag's many "changed") are folded into one line with a count: "pan: changed ×12".
class SceneLog {
public:
    void append(const std::string& line);
    const std::vector<std::string>& lines() const { return m_lines; }
    void clear();

private:
    std::vector<std::string> m_lines;
    std::string m_last;  // the last line as appended, before folding
    int m_repeats = 0;
};

/// One gesture the gallery plays on a scene, with what it shows.
struct SceneScript {
    std::string caption;
    std::function<void(VLXTouchSynthesizer&)> play;
};

struct InteractionScene {
    std::string name;   ///< short, for `--scene` and file names: "scroll", "long-press", ...
    std::string title;  ///< one line for people
    std::shared_ptr<VLXWindow> window;
    /// Shared with the recognisers' actions, so it outlives a moved scene.
    std::shared_ptr<SceneLog> log;
    /// Empty for a scene with nothing to play.
    std::vector<SceneScript> scripts;
};

/// The scene names in their order (the viewer's keys 1–9 follow it).
const std::vector<std::string>& interactionSceneNames();

/// Builds scene `name` in a new window of `size` points on a screen of `scale`; a scene with an
/// empty window for an unknown name. Sides are kept within 160–4096 points (non-finite: 160);
/// a scale outside (0, 4] is taken as 1.
InteractionScene makeInteractionScene(std::string_view name, VLXSize size = {360, 480},
                                      double scale = 1);
