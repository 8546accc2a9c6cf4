#include <VelmarCoreUI/Core/VLXLogger.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>

namespace {

struct LoggerState {
    std::mutex mutex;
    VLXLogger::Sink sink;
    int minimumLevel = static_cast<int>(VLXLogLevel::Info);
    std::map<std::string, double, std::less<>> executionTimes;
};

LoggerState& state() {
    static LoggerState shared;
    return shared;
}

void writeToStderr(const VLXLogRecord& record) {
    std::fprintf(stderr, "[%s] %s:%d %s %s\n", VLXLogger::nameOfLevel(record.level).c_str(),
                 record.file.c_str(), record.line, record.function.c_str(), record.message.c_str());
}

std::string formatMessage(const char* format, va_list arguments) {
    if (format == nullptr) {
        return {};
    }
    va_list copy;
    va_copy(copy, arguments);
    char small[256];
    const int length = std::vsnprintf(small, sizeof small, format, arguments);
    std::string message;
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof small) {
        message.assign(small, static_cast<std::size_t>(length));
    } else if (length >= 0) {
        message.resize(static_cast<std::size_t>(length));
        std::vsnprintf(message.data(), message.size() + 1, format, copy);
    }
    va_end(copy);
    return message;
}

}  // namespace

void VLXLogger::logLevelV(int level, const char* file, const char* function, int line,
                          const char* format, va_list arguments) {
    Sink sink;
    {
        std::lock_guard lock(state().mutex);
        if (level < state().minimumLevel) {
            return;
        }
        sink = state().sink;
    }
    VLXLogRecord record{level, file != nullptr ? file : "", function != nullptr ? function : "",
                        line, formatMessage(format, arguments)};
    // Called outside the lock, so a sink may log or swap sinks itself.
    if (sink) {
        sink(record);
    } else {
        writeToStderr(record);
    }
}

void VLXLogger::logLevel(int level, const char* file, const char* function, int line,
                         const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    logLevelV(level, file, function, line, format, arguments);
    va_end(arguments);
}

void VLXLogger::logLevel(VLXLogLevel level, const char* file, const char* function, int line,
                         const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    logLevelV(static_cast<int>(level), file, function, line, format, arguments);
    va_end(arguments);
}

VLXLogger::Sink VLXLogger::setSink(Sink sink) {
    std::lock_guard lock(state().mutex);
    Sink previous = std::move(state().sink);
    state().sink = std::move(sink);
    return previous;
}

void VLXLogger::setMinimumLevel(int level) {
    std::lock_guard lock(state().mutex);
    state().minimumLevel = level;
}

int VLXLogger::minimumLevel() {
    std::lock_guard lock(state().mutex);
    return state().minimumLevel;
}

void VLXLogger::logExecutionTimeOfBlock(const std::function<void()>& block,
                                        const std::string& key) {
    const auto start = std::chrono::steady_clock::now();
    if (block) {
        block();
    }
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    {
        std::lock_guard lock(state().mutex);
        state().executionTimes.insert_or_assign(key, elapsed.count());
    }
    logLevel(VLXLogLevel::Debug, "Source/Core/VLXLogger",
             "+[VLXLogger logExecutionTimeOfBlock:key:]", __LINE__, "%s: %.3f ms", key.c_str(),
             elapsed.count());
}

std::optional<double> VLXLogger::lastExecutionTime(const std::string& key) {
    std::lock_guard lock(state().mutex);
    const auto it = state().executionTimes.find(key);
    if (it == state().executionTimes.end()) {
        return std::nullopt;
    }
    return it->second;
}

std::string VLXLogger::nameOfLevel(int level) {
    switch (level) {
        case 0:
            return "Verbose";
        case 1:
            return "Debug";
        case 2:
            return "Info";
        case 3:
            return "Warning";
        case 4:
            return "Error";
        default:
            return "Level " + std::to_string(level);
    }
}

VLXLogCapture::VLXLogCapture(VLXLogLevel minimumLevel)
    : m_records(std::make_shared<std::vector<VLXLogRecord>>()),
      m_previousLevel(VLXLogger::minimumLevel()) {
    // The sink holds the records through a shared pointer so it stays valid even if a copy of
    // the sink outlives this capture.
    m_previousSink = VLXLogger::setSink(
        [records = m_records](const VLXLogRecord& record) { records->push_back(record); });
    VLXLogger::setMinimumLevel(static_cast<int>(minimumLevel));
}

VLXLogCapture::~VLXLogCapture() {
    VLXLogger::setSink(std::move(m_previousSink));
    VLXLogger::setMinimumLevel(m_previousLevel);
}
