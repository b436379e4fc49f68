// A program that runs beside this one, started without a shell: its arguments reach it as they are.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace processes {

class Process {
  public:
    // program: the path of its file. It finds an empty input, what it prints goes nowhere, and its errors go
    // where ours go. It is asked to end when this program ends. Nothing when the file is no program that can
    // be run.
    static std::optional<Process> start(const std::string& program,
                                        const std::vector<std::string>& arguments);
    // A program that still runs is stopped.
    ~Process() { stop(); }
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;

    // Waits until it has ended, at most so long. Whether it has.
    bool waitFor(std::chrono::milliseconds time);
    // Ends it, with what it has started: both are asked to, and made to when they do not within kPatience.
    void stop();

    // Ends it at once, as a crash would, and nothing else.
    void kill();

    static constexpr std::chrono::milliseconds kPatience{2000};

  private:
    explicit Process(pid_t id) : id_(id) {}
    // Whether it ends within a time. It keeps its number until it is let go.
    bool endsWithin(std::chrono::milliseconds time) const;
    void letGo();

    pid_t id_;  // also of the group of what it has started; 0 once it has ended
};

}  // namespace processes
