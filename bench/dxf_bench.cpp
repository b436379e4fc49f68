// Opening, walking and saving of drawings of three sizes: time, rate and peak memory.
//
//   dxf_bench              drawings of 10 000, 100 000 and 400 000 entities, made on the way
//   dxf_bench FILE...      these files
// With ezdxf installed, its time for opening the same file (up to 100 MB) is shown beside ours.
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/stopwatch.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "platform/ads/entities.h"

using namespace hostcad;

namespace {

double megabytes(double bytes) {
    return bytes / 1e6;
}

// The most memory that the process has had, in bytes.
double peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) * 1024;
    return 0;
}

bool make(Drawing& drawing, ObjectId owner, std::vector<Group> given) {
    std::vector<Group> built;
    if (!buildEntity(drawing, owner, given, built)) return false;
    if (drawing.object(owner).kind == ObjectKind::Block)
        drawing.appendEntity(owner, built);
    else
        drawing.appendSubentity(owner, built);
    return true;
}

// A survey as they come: of five entities three are points with three attributes, every tenth of them with
// extended data, and two are parcels.
bool makeSurvey(const std::string& path, int entities) {
    auto drawing = blankDrawing();
    GroupArena& arena = drawing->arena();
    ensureApplication(*drawing, "SURVEY_APP");
    addBlock(*drawing, "SRVPNO1", 2, 0, 0, 0);
    ObjectId space = drawing->modelSpace();
    for (int i = 0; i < entities; ++i) {
        double x = 1630000.125 + i % 1000 * 25.0625, y = 480000.0625 + i / 1000 * 40.5;
        if (i % 5 >= 3) {
            std::vector<Group> parcel{arena.text(0, "LWPOLYLINE"), arena.text(8, "LOTS"),
                                      integerGroup(70, 1)};
            for (int corner = 0; corner < 5; ++corner)
                parcel.push_back(arena.point(10, x + corner * 17.3, y + corner * corner * 9.7));
            if (!make(*drawing, space, parcel)) return false;
            continue;
        }
        std::vector<Group> point{arena.text(0, "INSERT"), arena.text(8, "POINTS"), integerGroup(66, 1),
                                 arena.text(2, "SRVPNO1"), arena.point(10, x, y, 550 + i % 97 * 0.31)};
        if (i % 10 == 0)
            for (const Group& group :
                 {arena.text(1001, "SURVEY_APP"), arena.text(1000, "REC-" + std::to_string(i)),
                  realGroup(1040, i * 0.25)})
                point.push_back(group);
        if (!make(*drawing, space, point)) return false;
        ObjectId insert = drawing->lastEntity();
        for (const char* tag : {"PT#", "ELEV2", "DESC2"})
            if (!make(*drawing, insert,
                      {arena.text(0, "ATTRIB"), arena.text(8, "PT-TEXT"), arena.point(10, x + 2, y + 2.5, 0),
                       realGroup(40, 3), arena.text(1, std::to_string(i)), arena.text(2, tag),
                       integerGroup(70, 1)}))
                return false;
        if (!make(*drawing, insert, {arena.text(0, "SEQEND")})) return false;
    }
    std::string error;
    return writeDxf(*drawing, path, drawing->format(), error);
}

// Looks at every main entity for the extended data of one application, and counts them.
long lookForLinks() {
    resbuf* application = acutBuildList(RTSTR, "SURVEY_APP", 0);
    const Drawing& drawing = currentDrawing();
    long entities = 0;
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id), ++entities) {
        ads_name name;
        nameOf(id, name);
        acutRelRb(acdbEntGetX(name, application));
    }
    acutRelRb(application);
    return entities;
}

void show(const char* what, double bytes, Time time) {
    std::printf("  %-12s %7.3f s, processor %7.3f s: %4.0f MB/s, %4.0f MB/s\n", what, time.wall,
                time.processor, megabytes(bytes) / time.wall, megabytes(bytes) / time.processor);
}

void compareWithEzdxf(const std::string& path, double opened) {
    std::string script =
        "/usr/bin/python3 -c \"\nimport time, sys\ntry: import ezdxf\nexcept ImportError: sys.exit()\n"
        "t = time.time(); ezdxf.readfile('" +
        path +
        "'); t = time.time() - t\n"
        "print(f'  ezdxf opens it in {t:.2f} s, {t / " +
        std::to_string(opened) + ":.0f} times as long')\"";
    if (std::system(script.c_str()) != 0) std::printf("  no time of ezdxf\n");
}

void measure(const std::string& path) {
    auto size = static_cast<double>(std::filesystem::file_size(path));
    std::string error, copy = path + ".saved", content;
    std::unique_ptr<Drawing> drawing;
    Time opened = timeOf([&] { drawing = readDxf(path, error); });
    if (!drawing) {
        std::printf("%s\n", error.c_str());
        return;
    }
    double peak = peakMemory();
    setCurrentDrawing(std::move(drawing));
    long entities = 0;
    Time looked = timeOf([&] { entities = lookForLinks(); });
    std::printf("%ld entities, %.1f MB, peak memory %.2f times the file\n", entities, megabytes(size),
                peak / size);
    show("open", size, opened);
    show("save", size, timeOf([&] { writeDxf(currentDrawing(), copy, currentDrawing().format(), error); }));
    std::filesystem::remove(copy);
    DxfFormat binary = currentDrawing().format();
    binary.binary = true;
    Time formatted = timeOf([&] { formatDxf(currentDrawing(), binary, content, error); });
    auto binarySize = static_cast<double>(content.size());
    show("to binary", binarySize, formatted);
    show("from binary", binarySize, timeOf([&] { parseDxf(content, error); }));
    std::printf("  lists with extended data: %.0f ms, processor %.0f ms, %.0f ns each\n", looked.wall * 1e3,
                looked.processor * 1e3, looked.processor / static_cast<double>(entities) * 1e9);
    if (!error.empty()) std::printf("  %s\n", error.c_str());
    std::fflush(stdout);
    constexpr double kLargestForEzdxf = 100e6;
    if (size < kLargestForEzdxf) compareWithEzdxf(path, opened.wall);
}

// Each file is measured in a process of its own, so that its peak of memory is its own.
void measureApart(const std::string& path) {
    pid_t child = ::fork();
    if (child == 0) {
        measure(path);
        std::fflush(stdout);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
}

}  // namespace

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) measureApart(arguments[i]);
    if (count > 1) return 0;
    std::string path =
        (std::filesystem::temp_directory_path() / ("dxf_bench" + std::to_string(::getpid()) + ".dxf"))
            .string();
    for (int entities : {10000, 100000, 400000}) {
        pid_t child = ::fork();
        if (child == 0) ::_exit(makeSurvey(path, entities) ? 0 : 1);
        int status = 0;
        ::waitpid(child, &status, 0);
        if (status != 0) return 1;
        measureApart(path);
        std::filesystem::remove(path);
    }
    return 0;
}
