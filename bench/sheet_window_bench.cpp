// How long the sheet takes to stand before a person's eyes: from the Lisp call to the painted window, with
// more and more features in the template. Runs on the offscreen platform unless told otherwise.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTimer>
#include <chrono>

#include "bench/prompting_host.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"

namespace {

constexpr int kAttributes = 15;

// Closes the sheet as soon as it has been painted, and tells how long that took.
double secondsToPaint(PromptingHost& host) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point start = Clock::now();
    double seconds = 0;
    QTimer::singleShot(0, [&] {
        QWidget* window = QApplication::activeModalWidget();
        window->grab();  // paints all of it, whatever the platform puts off
        seconds = std::chrono::duration<double>(Clock::now() - start).count();
        window->close();
    });
    host.run(host.call("1"));
    return seconds;
}

void OpenSheet(benchmark::State& state) {
    ui::QtBackend backend;
    PromptingHost host(backend, static_cast<int>(state.range(0)), kAttributes);
    for (auto _ : state) state.SetIterationTime(secondsToPaint(host));
}
BENCHMARK(OpenSheet)->Arg(10)->Arg(100)->Arg(1000)->Iterations(30)->UseManualTime()->Unit(
    benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
