#include "platform/workbooks/reading_process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <utility>

namespace workbooks {
namespace {

using Texts = std::vector<std::string>;

// What goes through the pipe: lists of texts. First stand what went wrong ("" for nothing) and the names of
// the sheets; then for each sheet its rows and the mark of its end.
constexpr uint32_t kEndOfSheet = 0xFFFFFFFF;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using Stream = std::unique_ptr<std::FILE, FileCloser>;

bool put(std::FILE* out, uint32_t number) {
    return std::fwrite(&number, sizeof number, 1, out) == 1;
}

bool put(std::FILE* out, const Texts& texts) {
    bool isDone = put(out, static_cast<uint32_t>(texts.size()));
    for (const std::string& text : texts)
        isDone = isDone && put(out, static_cast<uint32_t>(text.size())) &&
                 std::fwrite(text.data(), 1, text.size(), out) == text.size();
    return isDone;
}

bool take(std::FILE* in, uint32_t& number) {
    return std::fread(&number, sizeof number, 1, in) == 1;
}

bool take(std::FILE* in, uint32_t count, Texts& texts) {
    constexpr uint32_t kLongest = 1 << 24;
    texts.clear();
    for (uint32_t length = 0; texts.size() < count;) {
        if (!take(in, length) || length > kLongest) return false;
        std::string& text = texts.emplace_back(length, '\0');
        if (std::fread(text.data(), 1, length, in) != length) return false;
    }
    return true;
}

class ReadWorkbook : public Workbook {
  public:
    const Texts& sheets() const override { return names; }
    void read(size_t sheet, const TakeRow& take) const override {
        for (const Texts& row : rows.at(sheet))
            if (!take(row)) return;
    }

    Texts names;
    std::vector<std::vector<Texts>> rows;
};

// --- In the child -----------------------------------------------------------------------------------------

void limitResources() {
    constexpr rlim_t kSeconds = 60, kBytes = rlim_t{4} << 30;
    const rlimit time{kSeconds, kSeconds};
    ::setrlimit(RLIMIT_CPU, &time);
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    unsigned long pages = 0;
    if (Stream statm{std::fopen("/proc/self/statm", "r")};
        statm && std::fscanf(statm.get(), "%lu", &pages) == 1) {
        const rlim_t room =
            static_cast<rlim_t>(pages) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + kBytes;
        const rlimit memory{room, room};
        ::setrlimit(RLIMIT_AS, &memory);
    }
}

void writeAll(std::FILE* out, const std::function<std::unique_ptr<Workbook>()>& open) {
    std::unique_ptr<Workbook> book;
    try {
        book = open();
    } catch (const Error& error) {
        put(out, Texts{error.what()});
        return;
    }
    put(out, Texts{""});
    put(out, book->sheets());
    for (size_t sheet = 0; sheet < book->sheets().size(); ++sheet) {
        book->read(sheet, [&](const Texts& row) { return put(out, row); });
        put(out, kEndOfSheet);
    }
}

[[noreturn]] void runChild(int pipe, const std::function<std::unique_ptr<Workbook>()>& open) {
    int status = 1;
    limitResources();
    // The libraries tell what they miss where nobody asks for it.
    if (const int nowhere = ::open("/dev/null", O_WRONLY); nowhere >= 0)
        for (int stream : {STDOUT_FILENO, STDERR_FILENO}) ::dup2(nowhere, stream);
    if (Stream out{::fdopen(pipe, "wb")}) {
        try {
            writeAll(out.get(), open);
            status = std::fflush(out.get()) == 0 ? 0 : 1;
        } catch (const std::exception&) {
            // The parent sees that the end is missing.
        }
    }
    // Nothing of the parent's, of which this process is a copy, is to be ended here.
    ::_exit(status);
}

// --- In the parent ----------------------------------------------------------------------------------------

// False when it does not come to its end.
bool readAll(std::FILE* in, ReadWorkbook& book, std::string& problem) {
    uint32_t count = 0;
    Texts texts;
    if (!take(in, count) || !take(in, count, texts) || texts.size() != 1) return false;
    problem = texts.front();
    if (!problem.empty()) return true;
    if (!take(in, count) || !take(in, count, book.names)) return false;
    for (size_t sheet = 0; sheet < book.names.size(); ++sheet) {
        std::vector<Texts>& rows = book.rows.emplace_back();
        while (take(in, count) && count != kEndOfSheet)
            if (!take(in, count, rows.emplace_back())) return false;
        if (count != kEndOfSheet) return false;
    }
    return true;
}

bool endsWell(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return errno == ECHILD;  // the program has its children waited for: what was read decides
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::unique_ptr<Workbook> readInProcess(const std::string& path,
                                        const std::function<std::unique_ptr<Workbook>()>& open) {
    int ends[2];
    if (::pipe(ends) != 0) throw Error("The workbook \"" + path + "\" cannot be read: there is no pipe.");
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        runChild(ends[1], open);
    }
    ::close(ends[1]);
    auto book = std::make_unique<ReadWorkbook>();
    std::string problem;
    bool isWhole = false;
    {
        const Stream in{::fdopen(ends[0], "rb")};
        isWhole = child > 0 && in && readAll(in.get(), *book, problem);
    }
    const bool isWell = child > 0 && endsWell(child);
    if (!problem.empty()) throw Error(problem);
    if (!isWhole || !isWell)
        throw Error("The workbook \"" + path + "\" is damaged: it cannot be read to its end.");
    return book;
}

}  // namespace workbooks
