// Shape files and dBASE tables at three sizes, beside a copy of the same bytes with read and write, and,
// where they are installed, beside pyshp and the npm package "shapefile" (NODE_PATH says where that is).
//
//     shape_bench [LARGEST [LARGEST-FOR-THE-OTHERS]]
//
// Times are of the processor, in seconds, the best of some runs; those of the other programs are of one run.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"

using namespace norvane;

namespace {

constexpr int kFields = 20;
const std::string kScripts = NORVANE_SOURCE_DIR "/bench/";

double secondsOf(const std::function<void()>& work) {
    std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// The least time of each of several pieces of work, done by turns, so that a machine that is slower for a
// while is so for all of them: three rounds at least, and more where they are short.
std::vector<double> bestTimes(const std::vector<std::function<void()>>& works) {
    constexpr double kEnough = 3;
    constexpr int kFewest = 3;
    std::vector<double> best(works.size(), std::numeric_limits<double>::max());
    double all = 0;
    for (int round = 0; round < kFewest || all < kEnough; ++round)
        for (size_t i = 0; i < works.size(); ++i) {
            const double time = secondsOf(works[i]);
            best[i] = std::min(best[i], time);
            all += time;
        }
    return best;
}

void copyFile(const std::string& from, const std::string& to) {
    static char block[1 << 18];
    int in = ::open(from.c_str(), O_RDONLY), out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    for (ssize_t n; (n = ::read(in, block, sizeof block)) > 0;)
        if (::write(out, block, static_cast<size_t>(n)) != n) std::abort();
    ::close(in);
    ::close(out);
}

// What another program prints as its time; below 0 when it is not installed.
double othersTime(const std::string& command) {
    std::FILE* pipe = ::popen((command + " 2>/dev/null").c_str(), "r");
    double seconds = -1;
    bool told = pipe && std::fscanf(pipe, "%lf", &seconds) == 1;
    if (pipe) ::pclose(pipe);
    return told ? seconds : -1;
}

void report(const std::string& what, int count, double ours, double copy, double python, double node) {
    std::printf("%-24s %8d  %8.4f  %6.1f x copy", what.c_str(), count, ours, ours / copy);
    if (python >= 0) std::printf("  pyshp %8.3f = %6.1f times ours", python, python / ours);
    if (node >= 0) std::printf("  npm %8.3f = %5.1f times ours", node, node / ours);
    std::printf("\n");
    std::fflush(stdout);
}

// --- Shapes ---------------------------------------------------------------------------------------------

void writeShapes(const std::string& stem, int32_t type, int count, int vertices) {
    OpenShapeFile file(ShapeCreate(stem, type));
    std::vector<double> x(static_cast<size_t>(vertices)), y(x.size());
    for (int i = 0; i < count; ++i) {
        for (int v = 0; v < vertices; ++v) {
            x[static_cast<size_t>(v)] = i + v * 0.25;
            y[static_cast<size_t>(v)] = i * 0.5 + v * v * 0.125;
        }
        OwnedShape object(ShapeCreateObject(type, -1, 1, nullptr, nullptr, vertices, x.data(), y.data(),
                                            nullptr, nullptr, 0));
        if (ShapeWriteObject(file.get(), -1, object.get()) != i) std::abort();
    }
}

void readShapes(const std::string& stem, int count, int32_t listForm) {
    OpenShapeFile file(ShapeOpen(stem, "rb"));
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        OwnedShape object(ShapeReadObject(file.get(), i, listForm));
        if (!object) std::abort();
        sum += object->x ? object->x[0] : object->vertexList->x;
    }
    if (sum < 0) std::abort();
}

void benchShapes(const std::string& folder, const std::string& kind, int32_t type, int count, int vertices,
                 bool others) {
    std::string stem = folder + kind, theirs = folder + "theirs";
    const std::vector<double> times = bestTimes({
        [&] { writeShapes(stem, type, count, vertices); },
        [&] {
            copyFile(stem + ".shp", folder + "copy");
            copyFile(stem + ".shx", folder + "copy.shx");
        },
        [&] { readShapes(stem, count, 0); },
        [&] {
            if (vertices > 1) readShapes(stem, count, 1);
        },
    });
    const double write = times[0], copy = times[1], read = times[2], readLists = times[3];
    std::string numbers = " " + kind + " " + std::to_string(count) + " " + std::to_string(vertices);
    std::string python = "/usr/bin/python3 " + kScripts + "shape_bench.py ";
    report("write " + kind, count, write, copy,
           others ? othersTime(python + "write " + theirs + numbers) : -1, -1);
    report("read " + kind, count, read, copy, others ? othersTime(python + "read " + stem) : -1,
           others ? othersTime("node " + kScripts + "shape_bench.js " + stem) : -1);
    if (vertices > 1) report("read " + kind + " as lists", count, readLists, copy, -1, -1);
}

// --- Tables ---------------------------------------------------------------------------------------------

void writeTable(const std::string& stem, int count) {
    OpenDbfFile table(DbfCreate(stem));
    for (int f = 0; f < kFields; ++f) {
        std::string name = (f % 2 ? "N" : "T") + std::to_string(f);
        if (f % 2 == 0)
            DbfAddField(table.get(), name, kDbfString, 12, 0);
        else
            DbfAddField(table.get(), name, f % 4 == 1 ? kDbfInteger : kDbfDouble, 10, f % 4 == 1 ? 0 : 3);
    }
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> made;
        for (int i = 0; i < 1000; ++i) made.push_back("value " + std::to_string(i));
        return made;
    }();
    for (int i = 0; i < count; ++i)
        for (int f = 0; f < kFields; ++f) {
            if (f % 2 == 0) {
                DbfWriteStringAttribute(table.get(), i, f, texts[static_cast<size_t>(i % 1000)]);
            } else if (f % 4 == 1) {
                DbfWriteIntegerAttribute(table.get(), i, f, i % 5000);
            } else {
                DbfWriteDoubleAttribute(table.get(), i, f, i % 5000 + 0.25);
            }
        }
}

void readTable(const std::string& stem, int count) {
    OpenDbfFile table(DbfOpen(stem, "rb"));
    size_t sum = 0;
    for (int i = 0; i < count; ++i)
        for (int f = 0; f < kFields; ++f) sum += DbfReadStringAttribute(table.get(), i, f)[0] != 0;
    if (sum == 0) std::abort();
}

void benchTable(const std::string& folder, int count, bool others) {
    std::string stem = folder + "table", theirs = folder + "theirs";
    const std::vector<double> times = bestTimes({
        [&] { writeTable(stem, count); },
        [&] { copyFile(stem + ".dbf", folder + "copy"); },
        [&] { readTable(stem, count); },
    });
    const double write = times[0], copy = times[1], read = times[2];
    std::string python = "/usr/bin/python3 " + kScripts + "shape_bench.py ";
    report("write table", count, write, copy,
           others ? othersTime(python + "write-table " + theirs + " " + std::to_string(count)) : -1, -1);
    report("read table", count, read, copy, others ? othersTime(python + "read-table " + stem) : -1, -1);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    int largest = argumentCount > 1 ? std::atoi(arguments[1]) : 1000000;
    int largestForOthers = argumentCount > 2 ? std::atoi(arguments[2]) : 100000;
    std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
    std::string folder = std::string(::mkdtemp(pattern.data())) + "/";
    for (int count = 10000; count <= largest; count *= 10) {
        bool others = count <= largestForOthers;
        benchShapes(folder, "points", shape::kPoint, count, 1, others);
        benchShapes(folder, "lines", shape::kArc, count, 20, others);
        // A file holds 2 GB at most.
        benchShapes(folder, "polygons", shape::kPolygon, std::min(count, 600000), 200,
                    others && count < 100000);
        benchTable(folder, count, others);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
