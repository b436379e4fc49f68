// The window with large drawings: the first picture, frames while the view moves, picks, selection of
// everything, and memory. The whole program runs, on a screen that nobody sees.
//
//   window_bench FILE...      drawings; 10 000, 100 000 and 400 000 entities tell how the costs grow
//
// Each time is given by the clock on the wall and by the processor: on a machine that does other things too,
// the second tells more.
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QApplication>
#include <QMouseEvent>
#include <QThread>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/stopwatch.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/window/main_window.h"

using namespace hostcad;

namespace {

// One piece of work in a process of its own, so that nothing of one run helps another. Negative when it
// fails.
template <class Work>
Time timeApart(Work work) {
    int ends[2];
    if (::pipe(ends) != 0) return {-1, -1};
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        Time time = work();
        ::_exit(::write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
    }
    ::close(ends[1]);
    Time time{-1, -1};
    if (::read(ends[0], &time, sizeof time) != sizeof time) time = {-1, -1};
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return time;
}

double middle(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

Time middle(const std::vector<Time>& times) {
    std::vector<double> wall, processor;
    for (const Time& time : times) {
        wall.push_back(time.wall);
        processor.push_back(time.processor);
    }
    return {middle(wall), middle(processor)};
}

void print(const char* what, Time time, double scale, const char* unit) {
    std::printf("  %-44s %10.3f %s   (processor %.3f)\n", what, time.wall * scale, unit,
                time.processor * scale);
    std::fflush(stdout);
}

// The most memory that the process has had, in bytes.
double peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) * 1024;
    return 0;
}

// Runs a piece of work in a process of its own, so that no memory of one counts for the next.
template <class Work>
bool apart(Work work) {
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        work();
        std::fflush(stdout);
        ::_exit(0);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

// Average of the frames of a movement: `move` is called with the frame's number before each.
template <class Move>
void frames(const char* what, Canvas& canvas, int count, Move move) {
    Time time = timeOf([&] {
        for (int i = 0; i < count; ++i) {
            move(i);
            canvas.repaint();
        }
    });
    std::printf("  %-44s %10.1f frames/s   (processor %.1f)\n", what, count / time.wall,
                count / time.processor);
}

void sendMouse(Canvas& canvas, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, at, canvas.mapToGlobal(at), button, held, {});
    QApplication::sendEvent(&canvas, &event);
}

void pan(Canvas& canvas, const char* what) {
    QPointF start(canvas.width() / 2.0, canvas.height() / 2.0);
    sendMouse(canvas, QEvent::MouseButtonPress, start, Qt::MiddleButton, Qt::MiddleButton);
    frames(what, canvas, 40, [&](int i) {
        sendMouse(canvas, QEvent::MouseMove, start + QPointF(3 * i, 2 * i), Qt::NoButton, Qt::MiddleButton);
    });
    sendMouse(canvas, QEvent::MouseButtonRelease, start, Qt::MiddleButton, {});
}

void zoom(Canvas& canvas, int steps, const char* what) {
    QPointF at(canvas.width() * 0.4, canvas.height() * 0.45);
    frames(what, canvas, std::abs(steps), [&](int) {
        QWheelEvent event(at, canvas.mapToGlobal(at), {}, {0, steps > 0 ? 120 : -120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&canvas, &event);
    });
}

// The complete picture, made when the view has come to rest.
void rest(Canvas& canvas, const char* what) {
    constexpr unsigned long kUntilRest = 250;  // milliseconds
    QThread::msleep(kUntilRest);
    QApplication::processEvents();
    print(what, timeOf([&] {
              canvas.refresh();
              canvas.repaint();
          }),
          1e3, "ms");
}

void pick(Canvas& canvas, const char* what) {
    constexpr int kPicks = 200;
    size_t found = 0;
    Time time = timeOf([&] {
        for (int i = 0; i < kPicks; ++i)
            found += canvas.pick(QPointF(canvas.width() * (0.1 + 0.8 * (i * 37 % kPicks) / kPicks),
                                         canvas.height() * (0.1 + 0.8 * i / kPicks))) != 0;
    });
    print((std::string(what) + ", " + std::to_string(found) + " of 200 hit").c_str(), time, 1e3 / kPicks,
          "ms");
}

void selectAll(Canvas& canvas, bool crossing) {
    // From a corner above the picture to one below it: everything is inside.
    canvas.zoomExtents();
    canvas.zoomBy(0.8, QPointF(canvas.width() / 2.0, canvas.height() / 2.0));
    canvas.repaint();
    QPointF from(3, 3), to(canvas.width() - 4, canvas.height() - 4);
    if (crossing) std::swap(from, to);
    Time time = timeOf([&] {
        sendMouse(canvas, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        sendMouse(canvas, QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
        sendMouse(canvas, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        sendMouse(canvas, QEvent::MouseButtonRelease, to, Qt::LeftButton, {});
        canvas.repaint();
    });
    print(((crossing ? "crossing selection of " : "window selection of ") +
           std::to_string(canvas.selected().size()))
              .c_str(),
          time, 1e3, "ms");
    canvas.setSelected({});
}

// The program with an empty window.
struct Program {
    Program(int& argc, char** argv) : application(argc, argv), host(window, window, window) {
        QApplication::setOrganizationName("norvane-bench");
        std::setlocale(LC_NUMERIC, "C");
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        window.start(host, {}, {folder / "support/hostcad.mnu"});
        window.resize(1280, 860);
        window.QMainWindow::show();
        QApplication::processEvents();
    }
    Time open(const std::string& path) {
        return timeOf([&] {
            window.openDrawing(path);
            window.repaint();
            QApplication::processEvents();
        });
    }

    QApplication application;
    MainWindow window;
    Host host;
};

void work(const std::string& path, int argc, char** argv) {
    Program program(argc, argv);
    double before = peakMemory();
    program.open(path);
    Canvas& canvas = program.window.canvas();
    pan(canvas, "panning over all of it");
    rest(canvas, "the picture at rest, all of it");
    zoom(canvas, 12, "zooming in from all of it");
    pan(canvas, "panning, nine times nearer");
    rest(canvas, "the picture at rest, nine times nearer");
    zoom(canvas, 12, "zooming in further");
    pan(canvas, "panning, seventy-five times nearer");
    rest(canvas, "the picture at rest, seventy-five times nearer");
    pick(canvas, "pick, seventy-five times nearer");
    zoom(canvas, -24, "zooming out again");
    canvas.zoomExtents();
    pick(canvas, "pick with all of it in view");
    selectAll(canvas, false);
    selectAll(canvas, true);
    double size = static_cast<double>(std::filesystem::file_size(path));
    std::printf("  %-44s %10.0f MB, %.1f times the file\n", "memory at its peak, beyond an empty window",
                (peakMemory() - before) / 1e6, (peakMemory() - before) / size);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::fputs("Usage: window_bench FILE...\n", stderr), 2;
    if (!std::getenv("QT_QPA_PLATFORM")) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    for (int i = 1; i < argc; ++i) {
        std::string path = std::filesystem::absolute(argv[i]).string();
        std::printf("%s, %.1f MB\n", std::filesystem::path(path).filename().c_str(),
                    static_cast<double>(std::filesystem::file_size(path)) / 1e6);
        // By turns, so that a machine that is slower for a while is so for both.
        constexpr int kRuns = 7;
        std::vector<Time> files, pictures;
        for (int run = 0; run < kRuns; ++run) {
            files.push_back(timeApart([&] {
                std::string error;
                return timeOf([&] { readDxf(path, error); });
            }));
            pictures.push_back(timeApart([&] { return Program(argc, argv).open(path); }));
        }
        const Time alone = middle(files), withPicture = middle(pictures);
        print("opening the file alone, middle of 7", alone, 1, "s ");
        print("opening up to the first picture, middle of 7", withPicture, 1, "s ");
        std::printf("  %-44s %10.2f      (processor %.2f)\n", "the second for the first",
                    withPicture.wall / alone.wall, withPicture.processor / alone.processor);
        bool done = apart([&] { work(path, argc, argv); });
        if (!done) std::printf("  it has failed\n");
    }
    return 0;
}
