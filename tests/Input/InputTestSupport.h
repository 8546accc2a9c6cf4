#pragma once

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

/// A view that logs its touch methods as "<name> began 2" (the touch count).
class LoggingView : public VLXView {
public:
    static std::shared_ptr<LoggingView> make(const VLXRect& frame, std::string name,
                                             std::vector<std::string>* log) {
        auto view = makeWithFrame<LoggingView>(frame);
        view->m_name = std::move(name);
        view->m_log = log;
        return view;
    }
    void touchesBegan(const Touches& touches, const VLXEvent&) override { note("began", touches); }
    void touchesMoved(const Touches& touches, const VLXEvent&) override { note("moved", touches); }
    void touchesEnded(const Touches& touches, const VLXEvent&) override { note("ended", touches); }
    void touchesCancelled(const Touches& touches, const VLXEvent&) override {
        note("cancelled", touches);
    }

private:
    void note(const char* what, const Touches& touches) {
        m_log->push_back(m_name + " " + what + " " + std::to_string(touches.size()));
    }
    std::string m_name;
    std::vector<std::string>* m_log = nullptr;
};

/// A recogniser whose state the test requests, logging the touch calls it gets and the actions
/// its targets hear ("<name> touches began", "<name> began").
class ScriptedRecognizer : public VLXGestureRecognizer {
public:
    static std::shared_ptr<ScriptedRecognizer> make(std::string name,
                                                    std::vector<std::string>* log) {
        auto recognizer = makeInitialized<ScriptedRecognizer>();
        recognizer->m_name = name;
        recognizer->m_log = log;
        recognizer->addAction([log, name](VLXGestureRecognizer& r) {
            log->push_back(name + " " + VLXGestureRecognizerStateName(r.state()));
        });
        return recognizer;
    }
    void request(VLXGestureRecognizerState state) { setState(state); }
    void touchesBegan(const VLXTouchSet& t, const VLXEvent&) override { note("began", t); }
    void touchesMoved(const VLXTouchSet& t, const VLXEvent&) override { note("moved", t); }
    void touchesEnded(const VLXTouchSet& t, const VLXEvent&) override { note("ended", t); }
    void touchesCancelled(const VLXTouchSet& t, const VLXEvent&) override { note("cancelled", t); }
    void reset() override {
        m_log->push_back(m_name + " reset");
        VLXGestureRecognizer::reset();
    }

private:
    void note(const char* what, const VLXTouchSet& touches) {
        m_log->push_back(m_name + " touches " + what + " " + std::to_string(touches.size()));
    }
    std::string m_name;
    std::vector<std::string>* m_log = nullptr;
};

/// Sends one event holding `touches` at the touches' latest timestamp.
inline void sendTouches(VLXWindow& window, const VLXTouchSet& touches) {
    window.sendEvent(*VLXEvent::create(touches, std::numeric_limits<double>::quiet_NaN()));
}
