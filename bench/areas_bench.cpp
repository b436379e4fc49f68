// Areas of linework and the links of areas to records, at three sizes or in a drawing.
//
//     areas_bench [LARGEST]        lots in rows that share their sides, each with its label
//     areas_bench --crowd LINES    lines that all go through one point, within a square
//     areas_bench --drawing FILE   what is on the layers PARCELS and LOTS
//
// Times are of the processor and by the clock, in seconds: tracing alone, and function code 20 in whole, from
// the answers to the last link.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>

#include "bench/stopwatch.h"
#include "hostcad/editor/host.h"
#include "hostcad/lisp/printer.h"
#include "module/linktools/link_areas.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"
#include "platform/ads/result_chain.h"
#include "platform/ui/scripted/scripted_backend.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

class QuietHost : private hostcad::Output, private hostcad::InputSource {
  public:
    hostcad::Host& host() { return host_; }
    std::string run(const std::string& text) { return hostcad::lisp::toText(host_.lisp().runText(text)); }
    void answer(std::deque<std::string> answers) { answers_ = std::move(answers); }

  private:
    void write(std::string_view) override {}
    hostcad::Input next(const hostcad::Prompt&) override {
        if (answers_.empty()) return hostcad::Input::end();
        const std::string answer = answers_.front();
        answers_.pop_front();
        return hostcad::Input::ofText(answer);
    }
    std::deque<std::string> answers_;
    hostcad::NoView view_;
    hostcad::Host host_{*this, *this, view_};
};

constexpr const char* kSelect =
    "(setq set (ssget \"X\" '((-4 . \"<or\") (0 . \"LWPOLYLINE\") (0 . \"LINE\") (0 . \"TEXT\") (-4 . "
    "\"or>\"))) "
    "seeds nil i 0)"
    "(repeat (sslength set) (setq e (entget (ssname set i)) i (1+ i))"
    "(if (= (cdr (assoc 0 e)) \"TEXT\") (setq seeds (cons (cdr (assoc 10 e)) seeds))))";

void makeLots(QuietHost& host, int lots) {
    host.run(
        "(defun lot (n / x y) (setq x (* 40.0 (rem n 200)) y (* 60.0 (/ n 200)))"
        "(entmake (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\") '(100 . \"AcDbPolyline\") '(90 . 5) "
        "'(70 . 1)"
        "(list 10 x y) (list 10 (+ x 40.0) y) (list 10 (+ x 40.0) (+ y 60.0)) (list 10 (+ x 15.0) (+ y 60.0))"
        "(list 10 x (+ y 60.0))))"
        "(entmake (list '(0 . \"TEXT\") (list 10 (+ x 20.0) (+ y 30.0) 0.0) '(40 . 2.0) (cons 1 (strcat "
        "\"LOT \" (itoa n))))))");
    host.run("(setq n 0) (repeat " + std::to_string(lots) + " (lot n) (setq n (1+ n)))");
}

void makeDatabases(const fs::path& folder) {
    CreateTemplateDatabase((folder / "template.mdb").string(), DatabaseVersion::kAccess2000);
    CDaoDatabase database;
    database.Create((folder / "output.mdb").string());
    CDaoTableDef table(&database);
    table.Create("LOT");
    for (const char* name : {"PT_ID", "GIS_KEY", "NUM"}) table.CreateField(KeyColumn(name));
    table.Append();
}

// Function code 20 over everything, with the sides of the lots as they are.
void linkAll(QuietHost& host, ui::ScriptedBackend& backend, const fs::path& folder) {
    backend.answer(1390, {{ui::Step::Kind::Click, "OK"}});
    host.answer({"", "ALL", ""});
    ResultChain arguments;
    for (const char* file : {"", "template.mdb", "output.mdb"})
        arguments.addText(RTSTR, (folder / file).string());
    Call call(arguments.get());
    LinkAreas(call);
}

void measure(QuietHost& host, const char* what, const fs::path& folder) {
    ui::ScriptedBackend backend;
    ui::setBackend(&backend);
    host.run(kSelect);
    const std::string seeds = host.run("(length seeds)");
    host.run("(setq args (cons 1 (cons set seeds)))");
    std::string made;
    const Time tracing = timeOf([&] { made = host.run("(apply 'cf:scbpoly args)"); });
    host.run("(repeat " + made + " (entdel (entlast)))");
    const Time linking = timeOf([&] { linkAll(host, backend, folder); });
    const std::string linked =
        host.run("(if (setq s (ssget \"X\" '((-3 (\"ZGEO_GIS_2000\"))))) (sslength s) 0)");
    std::printf("%-24s labels %7s  areas %7s  traced in %6.2f (%6.2f)  linked %7s in %6.2f (%6.2f)\n", what,
                seeds.c_str(), made.c_str(), tracing.processor, tracing.wall, linked.c_str(),
                linking.processor, linking.wall);
    ui::setBackend(nullptr);
}

// Lines through one point, and one seed.
void measureCrowd(QuietHost& host, int lines) {
    host.run(
        "(defun line (x y u v) (entmake (list '(0 . \"LINE\") (list 10 x y 0.0) (list 11 u v 0.0))))"
        "(line -90.0 -90.0 90.0 -90.0) (line 90.0 -90.0 90.0 90.0) (line 90.0 90.0 -90.0 90.0) (line -90.0 "
        "90.0 "
        "-90.0 -90.0)"
        "(setq n " +
        std::to_string(lines) +
        " i 0) (repeat n (setq a (/ (* pi i) n) x (* 150.0 (cos a)) y (* 150.0 (sin a)) i (1+ i)) (line x y "
        "(- x) "
        "(- y)))");
    std::string made;
    const Time tracing = timeOf([&] { made = host.run("(cf:scbpoly 1 (ssget \"X\") '(50.0 20.0 0.0))"); });
    std::printf("%7d lines through one point: %s area traced in %6.2f (%6.2f)\n", lines, made.c_str(),
                tracing.processor, tracing.wall);
}

}  // namespace

int main(int count, char** arguments) {
    const fs::path base = fs::temp_directory_path() / ("areas-bench-" + std::to_string(::getpid()));
    auto folderOf = [&](const std::string& name) {
        fs::create_directories(base / name);
        makeDatabases(base / name);
        return base / name;
    };
    if (count > 2 && std::strcmp(arguments[1], "--drawing") == 0) {
        QuietHost host;
        const std::string error = host.host().openDrawing(arguments[2]);
        if (error.empty())
            measure(host, "drawing", folderOf("drawing"));
        else
            std::fprintf(stderr, "%s\n", error.c_str());
    } else if (count > 2 && std::strcmp(arguments[1], "--crowd") == 0) {
        QuietHost host;
        measureCrowd(host, std::atoi(arguments[2]));
    } else {
        const int largest = count > 1 ? std::atoi(arguments[1]) : 20000;
        for (int lots : {largest / 100, largest / 10, largest}) {
            QuietHost host;
            makeLots(host, lots);
            measure(host, (std::to_string(lots) + " lots").c_str(), folderOf(std::to_string(lots)));
        }
    }
    fs::remove_all(base);
}
