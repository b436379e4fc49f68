#include "hostcad/editor/host.h"

#include <ctime>
#include <filesystem>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/dictionaries.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/editor/area_check.h"
#include "hostcad/editor/area_tracing.h"
#include "hostcad/editor/drawing_problems.h"
#include "hostcad/editor/previous_version.h"
#include "hostcad/lisp/printer.h"
#include "platform/ads/result_buffer.h"
#include "platform/files/files.h"
#include "platform/scope/temporary_value.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

Host* theHost = nullptr;

std::string withSeparator(std::string folder) {
    if (!folder.empty() && folder.back() != '/') folder += '/';
    return folder;
}

std::string absolutePath(const std::string& path) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

struct Moment {
    std::tm local{};
    double seconds = 0;  // within the minute, with their fraction
};

Moment now() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    Moment moment;
    localtime_r(&time.tv_sec, &moment.local);
    moment.seconds = moment.local.tm_sec + static_cast<double>(time.tv_nsec) / 1e9;
    return moment;
}

// Days since the beginning of the Julian calendar, whole ones at midnight, with the time of day as the
// fraction.
double julianDay(const Moment& moment) {
    const std::tm& t = moment.local;
    int toMarch = (14 - (t.tm_mon + 1)) / 12;  // years begin in March, so that leap days come last
    long year = t.tm_year + 1900 + 4800 - toMarch;
    long month = t.tm_mon + 1 + 12 * toMarch - 3;
    long day = t.tm_mday + (153 * month + 2) / 5 + 365 * year + year / 4 - year / 100 + year / 400 - 32045;
    return static_cast<double>(day) + (t.tm_hour * 3600 + t.tm_min * 60 + moment.seconds) / 86400;
}

// 20050621.143000250: the date and time as one number.
double calendarNumber(const Moment& moment) {
    const std::tm& t = moment.local;
    double date = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100.0 + t.tm_mday;
    return date + t.tm_hour / 1e2 + t.tm_min / 1e4 + moment.seconds / 1e6;
}

}  // namespace

Host* Host::current() {
    return theHost;
}

Host::Host(Output& output, InputSource& source, View& view) : commandLine_(output, source), view_(view) {
    theHost = this;
    lisp_ = std::make_unique<lisp::Interpreter>([this](std::string_view text) { write(text); });
    lostLinks_ = std::make_unique<LostLinks>(*lisp_);
    commands_ = std::make_unique<CommandProcessor>(*this);
    modules_ = std::make_unique<Modules>(*this);
    defineVariables();
    defineAreaTracing(*this);
    defineAreaCheck(*this);
    setCurrentDrawing(blankDrawing());
    lostLinks_->watch();
    readViewBox();
}

Host::~Host() {
    modules_->unloadAll();  // while modules can still ask the host for what they need to go
    modules_.reset();
    commands_.reset();
    currentDrawing().setBeforeChange({});
    lostLinks_.reset();
    lisp_.reset();
    theHost = nullptr;
}

// --- Asking ------------------------------------------------------------------------------------------

Conventions Host::conventions() const {
    Conventions c;
    c.lastPoint = variables_.point("LASTPOINT");
    c.elevation = variables_.real("ELEVATION");
    c.angleFormat = static_cast<int>(variables_.integer("AUNITS"));
    c.angleBase = variables_.real("ANGBASE");
    c.isClockwise = variables_.integer("ANGDIR") == 1;
    return c;
}

void Host::setLastPoint(const Point& point) {
    variables_.set("LASTPOINT", VariableValue::ofPoint(point));
}

// Who has pressed Escape knows what has ended.
void Host::tell(const lisp::Error& error) {
    if (error.kind == lisp::Error::Kind::Cancel) return write(std::string("\n") + error.what() + "\n");
    lastTrace_ = error.trace();
    write(std::string("\n; error: ") + error.what() +
          (lastTrace_.empty() ? "\n" : " (ERRORTRACE tells where)\n"));
}

Answer Host::ask(Prompt prompt) {
    bool isPoint = prompt.kind == Prompt::Kind::Point;
    Answer answer = commandLine_.ask(std::move(prompt), conventions());
    if (isPoint && answer.isValue()) setLastPoint(answer.point);
    return answer;
}

void Host::select(std::vector<ObjectId> entities) {
    std::vector<EntityName> names(entities.size());
    for (size_t i = 0; i < entities.size(); ++i) nameOf(entities[i], names[i].data());
    view_.select(names);
    selection().set(std::move(entities), true);
}

// --- Running -----------------------------------------------------------------------------------------

bool Host::runLine(const std::string& line) {
    commandLine_.offerSelection();
    const bool done = run([&] { return feedTyped(text::trim(line)); });
    commandLine_.withdrawSelection();
    return done;
}

bool Host::perform(const std::function<void()>& action) {
    return run([&] {
        action();
        return true;
    });
}

bool Host::run(const std::function<bool()>& work) {
    lisp_->clearCancel();
    // What Lisp has changed before is a step of undo; what comes now is the next.
    currentDrawing().beginUndoGroup();
    currentDrawing().endUndoGroup();
    bool done = false;
    try {
        done = work();
        if (done) commands_->finish();
    } catch (const lisp::Error& error) {
        commands_->cancel();
        done = error.kind == lisp::Error::Kind::Quit;
        if (!done) tell(error);
    }
    if (std::string lost = lostLinks_->takeLine(); !lost.empty()) write(lost);
    return done;
}

// False when no command has that name.
bool Host::feedTyped(std::string_view typed) {
    if (typed.empty() || (typed.front() != '(' && typed.front() != '!'))
        return commands_->feed(Input::ofText(std::string(typed))) != CommandProcessor::Result::Unknown;
    if (typed.front() == '!') typed.remove_prefix(1);
    lisp::Value value = lisp_->runText(typed);
    write("\n" + lisp::toText(value) + "\n");
    return true;
}

void Host::runScript(const std::string& path) {
    lisp_->clearCancel();
    lisp_->runFile(path);
    if (std::string lost = lostLinks_->takeLine(); !lost.empty()) write(lost);
    std::string open = commands_->activeName();
    if (commands_->finish() == CommandProcessor::Result::Abandoned)
        throw lisp::Error("the script leaves the command " + open + " without its answers");
}

// --- Drawings ----------------------------------------------------------------------------------------

std::string Host::replaceDrawing(std::unique_ptr<Drawing> drawing) {
    modules_->drawingClosing();
    keptCopies_.forget();
    hold_.release();
    setCurrentDrawing(std::move(drawing));
    lostLinks_->watch();
    readViewBox();
    modules_->drawingOpened();
    return "";
}

std::string Host::openDrawing(const std::string& name) {
    if (modules_->isBusy()) return "The drawing cannot be changed while a module is at work.";
    std::string path = findFile(name);
    if (path.empty() && files::extensionOf(name).empty()) path = findFile(name + ".dxf");
    if (path.empty()) return "There is no file " + name + ".";
    std::string error;
    std::vector<std::string> remarks;
    std::unique_ptr<Drawing> drawing = readDxf(path, error, &remarks);
    // The reader's sentence begins with the path.
    if (!drawing) return whyNotOpened(path, error.substr(std::min(path.size() + 2, error.size())));
    for (const std::string& remark : remarks) write("\n" + path + ": " + remark);
    if (!remarks.empty()) write("\n");
    drawing->setPath(path);
    replaceDrawing(std::move(drawing));
    holdDrawing();
    return "";
}

// Another program that has the file is told once, here.
void Host::holdDrawing() {
    const std::string& path = currentDrawing().path();
    if (!holdsDrawings_ || path.empty() || hold_.take(path)) return;
    write("\n" + path + " is open with " + hold_.holder() + ", so it is opened read-only here.\n");
}

std::string Host::newDrawing(const std::string& model) {
    if (modules_->isBusy()) return "The drawing cannot be changed while a module is at work.";
    if (model.empty()) return replaceDrawing(blankDrawing());
    scope::TemporaryValue holding(holdsDrawings_, false);  // the model stays free
    std::string problem = openDrawing(model);
    if (problem.empty()) currentDrawing().setPath("");
    return problem;
}

std::string Host::recoverDrawing(const KeptCopies::LeftBehind& copy) {
    if (modules_->isBusy()) return "The drawing cannot be changed while a module is at work.";
    std::string error;
    std::unique_ptr<Drawing> drawing = readDxf(copy.copy, error);
    if (!drawing) return "Cannot open " + error;
    drawing->setPath(copy.drawing);
    drawing->setModified(true);
    replaceDrawing(std::move(drawing));
    keptCopies_.adopt(copy);
    holdDrawing();
    return "";
}

std::string Host::saveDrawing(const std::string& name, bool isCopy) {
    Drawing& drawing = currentDrawing();
    std::string path = files::native(name.empty() ? drawing.path() : name);
    if (path.empty()) return "The drawing has no name yet.";
    if (files::extensionOf(path).empty()) path += ".dxf";
    if (!text::equalNoCase(files::extensionOf(path), "dxf"))
        return "Drawings are written as DXF only: give a name that ends in .dxf.";
    path = absolutePath(path);
    // What another program has saved meanwhile is not written over either when that program lets go.
    if (path == drawing.path() && !hold_.holder().empty())
        return "Cannot save " + path + ".\nIt was opened read-only, because it was open with " +
               hold_.holder() + ".";
    DrawingHold hold;
    if (path != hold_.path() && !hold.take(path))
        return "Cannot save " + path + ".\nIt is open with " + hold.holder() + ".";
    PreviousVersion previous(path);
    std::string error;
    if (!writeDxf(drawing, path, drawing.format(), error)) return whyNotSaved(path, error);
    previous.keep();
    lastSaved_ = path;
    tellWhatIsNotInFile();
    if (isCopy && path != drawing.path()) return "";
    if (holdsDrawings_ && path != hold_.path()) hold_ = std::move(hold);
    drawing.setPath(path);
    drawing.setModified(false);
    keptCopies_.forget();
    return "";
}

void Host::tellWhatIsNotInFile() {
    const size_t lost = objectsLostInFile(currentDrawing());
    if (lost == 0) return;
    write(text::format(
        "\nA file of R12 has no place for what programs keep in the drawing by names: %zu %s not in it.\n",
        lost, lost == 1 ? "entry is" : "entries are"));
}

// --- Files -------------------------------------------------------------------------------------------

std::string Host::findFile(const std::string& name) const {
    std::string path = files::native(name);
    if (path.empty()) return "";
    if (files::exists(path)) return absolutePath(files::onDisk(path));
    if (path.front() == '/') return "";
    std::vector<std::string> folders{files::folderOf(currentDrawing().path())};
    folders.insert(folders.end(), supportFolders_.begin(), supportFolders_.end());
    for (const std::string& folder : folders) {
        std::string candidate = files::join(folder, path);
        if (!folder.empty() && files::exists(candidate)) return absolutePath(files::onDisk(candidate));
    }
    return "";
}

void Host::addSupportFolder(const std::string& folder) {
    supportFolders_.push_back(withSeparator(folder));
}

void Host::setFolders(const Folders& folders) {
    auto set = [this](const char* symbol, const std::string& folder) {
        lisp_->intern(symbol)->value = lisp::Value::string(folder);
    };
    folders_.program = withSeparator(absolutePath(folders.program));
    folders_.support = withSeparator(absolutePath(folders.support));
    folders_.user = withSeparator(absolutePath(folders.user));
    std::error_code error;
    std::string temporary = std::filesystem::temp_directory_path(error).string();
    set("exedir$", folders_.program);
    set("lspdir$", folders_.support);
    set("usrdir$", folders_.user);
    set("tmpdir$", withSeparator(error ? "/tmp" : temporary));
    addSupportFolder(folders_.support);
    addSupportFolder(folders_.program);
    keptCopies_.setFolder(folders_.user + "recovery/");
}

// --- View --------------------------------------------------------------------------------------------

namespace {

constexpr std::string_view kActiveView = "*ACTIVE";

double aspectOf(const View& view) {
    return view.pixelHeight() > 0 ? static_cast<double>(view.pixelWidth()) / view.pixelHeight() : 1;
}

}  // namespace

void Host::readViewBox() {
    const Drawing& drawing = currentDrawing();
    ViewBox box;
    if (ObjectId record = drawing.record("VPORT", kActiveView)) {
        Groups groups = drawing.groups(record);
        if (const Group* centre = find(groups, 12)) box.centre = {centre->x(), centre->y(), 0};
        box.height = realOf(groups, 40, 1);
    } else {
        Groups centre = drawing.headerVariable("$VIEWCTR");
        if (!centre.empty()) box.centre = {centre.front().x(), centre.front().y(), 0};
        box.height = drawing.headerReal("$VIEWSIZE", 1);
    }
    if (!(box.height > 0)) box.height = 1;
    box.width = box.height * aspectOf(view_);
    viewBox_ = box;
    earlierViews_.clear();
    view_.show(viewBox_);
}

void Host::setViewBox(const Point& centre, double height) {
    rememberViewBox();
    viewBox_ = {centre, height, height * aspectOf(view_)};
    keepViewBox();
}

void Host::rememberViewBox() {
    constexpr size_t kMostEarlierViews = 30;
    earlierViews_.push_back(viewBox_);
    if (earlierViews_.size() > kMostEarlierViews) earlierViews_.erase(earlierViews_.begin());
}

void Host::noteViewBox(const ViewBox& box, bool begins) {
    if (begins) rememberViewBox();
    viewBox_ = box;
}

bool Host::showEarlierView() {
    if (earlierViews_.empty()) return false;
    viewBox_ = earlierViews_.back();
    earlierViews_.pop_back();
    view_.show(viewBox_);
    return true;
}

void Host::restoreViewBox() {
    if (showEarlierView()) keepViewBox();
}

void Host::keepViewBox() {
    Drawing& drawing = currentDrawing();
    const auto& [centre, height, width] = viewBox_;
    if (ObjectId record = drawing.record("VPORT", kActiveView)) {
        Groups old = drawing.groups(record);
        std::vector<Group> groups(old.begin(), old.end());
        for (Group& group : groups) {
            if (group.code == 12) group = drawing.arena().point(12, centre.x, centre.y);
            if (group.code == 40) group = realGroup(40, height);
        }
        drawing.setGroupsUnnoted(record, groups);
    }
    view_.show(viewBox_);
}

// --- Variables ---------------------------------------------------------------------------------------

void Host::defineVariables() {
    using V = VariableValue;
    auto number = [](long n) { return [n] { return V::ofInteger(n); }; };
    variables_.define("ACADVER", [] { return V::ofText("16.1"); });
    variables_.define("DATE", [] { return V::ofReal(julianDay(now())); });
    variables_.define("CDATE", [] { return V::ofReal(calendarNumber(now())); });
    variables_.define("DWGNAME", [] {
        std::string name = files::nameOf(currentDrawing().path());
        return V::ofText(name.empty() ? "Drawing.dxf" : name);
    });
    variables_.define("DWGPREFIX", [] {
        std::string folder = files::folderOf(currentDrawing().path());
        return V::ofText(folder.empty() ? withSeparator(absolutePath(".")) : folder);
    });
    variables_.define("DWGTITLED", [] { return V::ofInteger(!currentDrawing().path().empty()); });
    variables_.define("DBMOD", [] { return V::ofInteger(currentDrawing().modified()); });
    variables_.define("LOGINNAME", [] {
        const char* user = std::getenv("USER");
        return V::ofText(user ? user : "");
    });
    variables_.define("TEMPPREFIX", [this] {
        lisp::Value folder = lisp_->intern("tmpdir$")->value;
        return V::ofText(folder.isString() ? folder.asString() : "/tmp/");
    });
    variables_.define("VIEWCTR", [this] { return V::ofPoint(viewBox_.centre); });
    variables_.define("VIEWSIZE", [this] { return V::ofReal(viewBox_.height); });
    variables_.define("SCREENSIZE", [this] {
        return V::ofPoint(
            {static_cast<double>(view_.pixelWidth()), static_cast<double>(view_.pixelHeight()), 0}, true);
    });
    variables_.define("CMDNAMES", [this] { return V::ofText(commands_->activeName()); });
    variables_.define("CMDACTIVE", [this] {
        constexpr long kCommand = 1, kScript = 4;  // a command is under way; a script answers
        return V::ofInteger((commands_->isActive() ? kCommand : 0) |
                            (commandLine_.isAnsweredByScript() ? kScript : 0));
    });
    variables_.define("HANDLES", number(1));
    variables_.define("WORLDUCS", number(1));
    variables_.define(
        "CLAYER", [] { return V::ofText(currentDrawing().headerText("$CLAYER", "0")); },
        [](const V& value) -> std::string {
            Drawing& drawing = currentDrawing();
            ObjectId layer = drawing.record("LAYER", value.text);
            if (!layer) return "There is no layer " + value.text + ".";
            constexpr int kFrozen = 1;
            if (integerOf(drawing.groups(layer), 70) & kFrozen)
                return "The layer " + value.text + " is frozen.";
            drawing.setHeaderText("$CLAYER", 8, drawing.symbol(layer));
            return "";
        });
    // The colour of new entities: a number in the file, a word or number here.
    variables_.define(
        "CECOLOR",
        [] {
            int64_t colour = currentDrawing().headerInteger("$CECOLOR", 256);
            return V::ofText(colour == 256 ? "BYLAYER" : colour == 0 ? "BYBLOCK" : std::to_string(colour));
        },
        [](const V& value) -> std::string {
            std::string word = text::upper(value.text);
            long colour = word == "BYLAYER" ? 256 : word == "BYBLOCK" ? 0 : text::toLong(word);
            if (colour < 0 || colour > 256 || (colour == 0 && word != "BYBLOCK"))
                return "There is no colour " + word + ".";
            currentDrawing().setHeaderInteger("$CECOLOR", 62, colour);
            return "";
        });
}

}  // namespace hostcad
