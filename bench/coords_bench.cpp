// Coordinate files at three sizes: finding, walking, appending, and writing many.
//
//     coords_bench [LARGEST]
//
// Times are of the processor, the best of three.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <numeric>
#include <random>
#include <string>

#include "module/coords/coordinate_file.h"
#include "platform/files/byte_order.h"
#include "platform/files/random_file.h"

using namespace norvane;

namespace {

double bestOf(int runs, const std::function<void()>& work) {
    double best = 1e9;
    for (; runs > 0; --runs) {
        std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void report(const char* what, int count, double seconds) {
    std::printf("%-36s %8d  %8.4f s  %8.3f us each\n", what, count, seconds, seconds / count * 1e6);
    std::fflush(stdout);
}

void need(bool holds) {
    if (!holds) std::abort();
}

std::vector<int> shuffled(int count) {
    std::vector<int> numbers(static_cast<size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 1);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
    return numbers;
}

std::vector<PointRecord> pointsOf(const std::vector<int>& numbers, const std::string& prefix) {
    std::vector<PointRecord> points;
    for (int n : numbers) {
        PointRecord p;
        p.name = prefix + std::to_string(n);
        p.northing = 480000 + n * 0.25;
        p.easting = 1630000 + n * 0.5;
        p.description = "IRON PIN";
        points.push_back(p);
    }
    return points;
}

std::unique_ptr<CoordinateFile> opened(int format, const std::string& path) {
    auto file = MakeCoordinateFile(format);
    need(file->Open(path));
    return file;
}

int walked(CoordinateFile& file) {
    PointRecord point;
    int count = 0;
    file.Rewind();
    while (file.Move(nullptr, point, 1)) ++count;
    return count;
}

void findAll(CoordinateFile& file, const std::vector<int>& numbers, const std::string& prefix) {
    PointRecord point;
    for (int n : numbers) need(file.Find(prefix + std::to_string(n), point, 0, 1));
}

// Numbers end at 99999 for writers; a reader takes what the file has.
void makeNumeric(const std::string& path, int count) {
    auto file = files::RandomFile::open(path, files::RandomFile::Mode::kCreate);
    for (int i = 0; i <= count; ++i) {
        char slot[56] = {};
        files::putLittle(slot, i == 0 ? count : 480000 + i * 0.25);
        files::putLittle(slot + 8, 1630000.0);
        std::snprintf(slot + 24, 32, "IRON PIN");
        file->write(int64_t{i} * 56, {slot, sizeof slot});
    }
}

void readInOrder(const std::string& path) {
    std::FILE* in = std::fopen(path.c_str(), "rb");
    static char block[1 << 18];
    while (std::fread(block, 1, sizeof block, in) > 0) continue;
    std::fclose(in);
}

void benchNumeric(const std::string& folder, int count, const std::vector<int>& order) {
    std::string path = folder + "numeric.crd";
    makeNumeric(path, count);
    auto file = opened(kNumericCrd, path);
    report("numeric: find in any order", count, bestOf(3, [&] { findAll(*file, order, ""); }));
    report("numeric: walk ALL", count, bestOf(3, [&] { need(walked(*file) == count); }));
    report("  reading the file in order", count, bestOf(3, [&] { readInOrder(path); }));
}

void benchAlphanumeric(const std::string& folder, int count, const std::vector<int>& order) {
    std::string path = folder + "names.crd";
    std::vector<PointRecord> points = pointsOf(order, "P");
    auto file = MakeCoordinateFile(kAlphanumericCrd);
    report("alphanumeric: write many, any order", count,
           bestOf(2, [&] { need(file->Create(path, 31) && file->WriteAll(points, 1) == points.size()); }));
    report("alphanumeric: find in any order", count, bestOf(2, [&] { findAll(*file, order, "P"); }));
    report("alphanumeric: walk ALL", count, bestOf(2, [&] { need(walked(*file) == count); }));
    std::vector<int> ascending(order.size());
    std::iota(ascending.begin(), ascending.end(), 1);
    points = pointsOf(ascending, "P");
    report("alphanumeric: append one by one", count, bestOf(2, [&] {
               need(file->Create(path, 31));
               for (const PointRecord& p : points) need(file->Write(p, 1));
           }));
}

void benchIndexed(const std::string& folder, int count, const std::vector<int>& order) {
    std::string path = folder + "indexed.zgc";
    std::vector<PointRecord> points = pointsOf(order, "P");
    auto file = MakeCoordinateFile(kIndexedZgc);
    report("indexed: write many, any order", count,
           bestOf(2, [&] { need(file->Create(path, 31) && file->WriteAll(points, 1) == points.size()); }));
    report("indexed: find in any order", count, bestOf(2, [&] { findAll(*file, order, "P"); }));
    report("indexed: walk ALL", count, bestOf(2, [&] { need(walked(*file) == count); }));
}

}  // namespace

int main(int argumentCount, char** arguments) {
    int largest = argumentCount > 1 ? std::atoi(arguments[1]) : 1000000;
    std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
    std::string folder = std::string(::mkdtemp(pattern.data())) + "/";
    for (int count = 10000; count <= largest; count *= 10) {
        std::vector<int> order = shuffled(count);
        benchNumeric(folder, count, order);
        benchAlphanumeric(folder, count, order);
        benchIndexed(folder, count, order);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
