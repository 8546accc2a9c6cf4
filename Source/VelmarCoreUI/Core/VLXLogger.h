#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdarg>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Severity of a log record. The graph view logs its failures at `Error` (4), the renderers at
/// `Warning` (3); execution times are logged at `Debug`.
enum class VLXLogLevel : int {
    Verbose = 0,
    Debug = 1,
    Info = 2,
    Warning = 3,
    Error = 4,
};

/// One logged message with where it came from.
struct VLX_EXPORT VLXLogRecord {
    int level = 0;
    std::string file;      ///< source path as the caller gave it ("Source/Graphing/VLXGraphView")
    std::string function;  ///< "-[VLXGraphView renderGraph]"-style text
    int line = 0;
    std::string message;  ///< the formatted message
};

/// The toolkit's logger: printf-style messages with a level and a source position, delivered to
/// one replaceable sink. Records below the minimum level are dropped before formatting.
class VLX_EXPORT VLXLogger {
public:
    using Sink = std::function<void(const VLXLogRecord&)>;

    /// Formats `format` with the arguments (as printf does) and hands the record to the sink.
    /// Null `file`, `function` or `format` count as empty text.
    static void logLevel(int level, const char* file, const char* function, int line,
                         const char* format, ...) __attribute__((format(printf, 5, 6)));
    static void logLevel(VLXLogLevel level, const char* file, const char* function, int line,
                         const char* format, ...) __attribute__((format(printf, 5, 6)));
    static void logLevelV(int level, const char* file, const char* function, int line,
                          const char* format, va_list arguments)
        __attribute__((format(printf, 5, 0)));

    /// Replaces the sink; an empty function restores the default, which writes one line
    /// "[Error] file:line function message" to stderr. Returns the previous sink.
    static Sink setSink(Sink sink);
    /// Records with a level below this are dropped. Default: `Info`.
    static void setMinimumLevel(int level);
    static int minimumLevel();

    /// Runs `block` at once, then logs at `Debug` how long it took under `key`, in
    /// milliseconds of the steady clock, and remembers that duration for `lastExecutionTime`.
    /// An empty block takes no time but is still recorded.
    static void logExecutionTimeOfBlock(const std::function<void()>& block, const std::string& key);
    /// The duration in milliseconds of the last timed run under `key`; nothing if none ran.
    static std::optional<double> lastExecutionTime(const std::string& key);

    /// "Verbose", "Debug", "Info", "Warning", "Error", or "Level N" for other numbers.
    static std::string nameOfLevel(int level);
};

/// Collects every record logged while it lives (at any level unless told otherwise), then
/// puts back the previous sink and minimum level. Meant for tests.
class VLX_EXPORT VLXLogCapture {
public:
    explicit VLXLogCapture(VLXLogLevel minimumLevel = VLXLogLevel::Verbose);
    ~VLXLogCapture();
    VLXLogCapture(const VLXLogCapture&) = delete;
    VLXLogCapture& operator=(const VLXLogCapture&) = delete;

    const std::vector<VLXLogRecord>& records() const { return *m_records; }
    void clear() { m_records->clear(); }

private:
    std::shared_ptr<std::vector<VLXLogRecord>> m_records;
    VLXLogger::Sink m_previousSink;
    int m_previousLevel;
};
