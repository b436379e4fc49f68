// The editor of the template in a window: how long it takes to stand there, and to show another feature, with
// more and more features of 20 attributes.
#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidget>
#include <chrono>

#include "bench/prompting_host.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"

namespace {

constexpr int kAttributes = 20;
constexpr const char* kTree = "1003";

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Runs the editor; what is done in its window gives the seconds to report.
template <class Work>
double inEditor(PromptingHost& host, Work work) {
    double seconds = 0;
    QTimer::singleShot(0, [&] {
        QWidget* window = QApplication::activeModalWidget();
        seconds = work(*window);
        // The question at the end is answered by the next event.
        QTimer::singleShot(0, [] {
            auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            question->button(QMessageBox::Yes)->click();
        });
        window->close();
    });
    host.run("(cf:gis_smart_prompting 15)");
    return seconds;
}

class EditorBench {
  public:
    explicit EditorBench(benchmark::State& state)
        : host_(backend_, static_cast<int>(state.range(0)), kAttributes) {
        host_.run("(cf:gis_smart_prompting 2 1 \"" + host_.templatePath() + "\")");
    }
    PromptingHost& host() { return host_; }

  private:
    ui::QtBackend backend_;
    PromptingHost host_;
};

void OpenEditor(benchmark::State& state) {
    EditorBench bench(state);
    for (auto _ : state) {
        Clock::time_point start = Clock::now();
        state.SetIterationTime(inEditor(bench.host(), [&](QWidget& window) {
            window.grab();
            return secondsSince(start);
        }));
    }
}

void ChooseFeature(benchmark::State& state) {
    EditorBench bench(state);
    int next = 0;
    for (auto _ : state)
        state.SetIterationTime(inEditor(bench.host(), [&](QWidget& window) {
            window.grab();
            auto* tree = window.findChild<QTreeWidget*>(kTree);
            QTreeWidgetItem* category = tree->topLevelItem(next % tree->topLevelItemCount());
            Clock::time_point start = Clock::now();
            emit tree->itemDoubleClicked(category->child(next++ % category->childCount()), 0);
            window.grab();
            return secondsSince(start);
        }));
}

BENCHMARK(OpenEditor)
    ->Arg(50)
    ->Arg(500)
    ->Arg(5000)
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ChooseFeature)
    ->Arg(50)
    ->Arg(500)
    ->Arg(5000)
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
