#include "platform/ui/scripted/scripted_backend.h"

#include <algorithm>
#include <cctype>

#include "platform/text/text.h"

namespace ui {
namespace {

// The number that is written in digits; -1 when it is none.
int digitsOf(const std::string& written) {
    bool digits = !written.empty() && std::all_of(written.begin(), written.end(),
                                                  [](unsigned char c) { return std::isdigit(c); });
    return digits ? static_cast<int>(text::toLong(written)) : -1;
}

// The index that a pick names: an item's exact text first, or that of its first column, then digits.
int indexOf(Control& control, const std::string& wanted) {
    if (auto* items = dynamic_cast<ItemControl*>(&control)) {
        if (int index = items->findExact(wanted); index >= 0) return index;
        auto* list = dynamic_cast<List*>(items);
        for (int i = 0; list && list->columns() > 1 && i < list->count(); ++i)
            if (list->text(i, 0) == wanted) return i;
        return digitsOf(wanted);
    }
    if (auto* tabs = dynamic_cast<Tabs*>(&control)) {
        auto page = std::find(tabs->pages().begin(), tabs->pages().end(), wanted);
        if (page != tabs->pages().end()) return static_cast<int>(page - tabs->pages().begin());
        return digitsOf(wanted);
    }
    if (auto* tree = dynamic_cast<Tree*>(&control)) {
        // A path of texts with "/" between them, or the text of a node at any depth.
        int node = -1;
        for (const std::string& part : text::split(wanted, '/'))
            if ((node = tree->find(part, node)) < 0) break;
        if (node >= 0) return node;
        for (size_t i = 0; i < tree->nodes().size(); ++i)
            if (!tree->nodes()[i].removed && tree->nodes()[i].text == wanted) return static_cast<int>(i);
        // Or a number of the nodes at the top.
        const std::vector<int> top = tree->children().back();
        const int index = digitsOf(wanted);
        return index >= 0 && static_cast<size_t>(index) < top.size() ? top[static_cast<size_t>(index)] : -1;
    }
    return -1;
}

Grid* gridOf(Dialog& dialog, const std::string& name) {
    if (!name.empty()) return dynamic_cast<Grid*>(dialog.find(name));
    for (const auto& control : dialog.controls())
        if (auto* grid = dynamic_cast<Grid*>(control.get())) return grid;
    return nullptr;
}

// The captions of an entry and of the headings above it, with "/" between them.
std::string menuPath(const std::vector<Menu::Entry>& entries, size_t index) {
    std::string path = plainCaption(entries[index].caption);
    for (size_t i = index, level = static_cast<size_t>(entries[index].level); i-- > 0 && level > 0;)
        if (entries[i].level < static_cast<int>(level)) {
            path = plainCaption(entries[i].caption) + "/" + path;
            level = static_cast<size_t>(entries[i].level);
        }
    return path;
}

// A step as the log keeps it: without what is typed into a secret edit.
std::string loggedText(const Dialog& dialog, const Step& step) {
    auto* edit = dynamic_cast<const Edit*>(dialog.find(step.control));
    if (step.kind != Step::Kind::Text || !edit || !edit->secret()) return stepText(step);
    Step shown = step;
    shown.text = "****";
    return stepText(shown);
}

// An entry is named by its caption, or where that is not enough by its path.
std::string performMenu(Dialog& dialog, const std::string& name) {
    for (const auto& control : dialog.controls())
        if (auto* menu = dynamic_cast<Menu*>(control.get()))
            for (size_t i = 0; i < menu->entries().size(); ++i) {
                const Menu::Entry& entry = menu->entries()[i];
                if (!entry.command) continue;
                if (plainCaption(entry.caption) == plainCaption(name) || menuPath(menu->entries(), i) == name)
                    return dialog.userMenu(*menu, entry.command);
            }
    return "there is no menu entry \"" + name + "\"";
}

std::string performCell(Dialog& dialog, Grid& grid, const Step& step) {
    const CellPosition at{step.column, step.row};
    if (step.kind == Step::Kind::Cell) return dialog.userCell(grid, at, step.text);
    if (step.kind == Step::Kind::ClickCell && at.row == 0) return dialog.userClickHeading(grid, at.column);
    std::string problem = dialog.userActivate(grid, at);
    if (problem.empty() && dialog.running() && step.kind == Step::Kind::DoubleClickCell)
        dialog.userDoubleClickCell(grid, at);
    return problem;
}

int buttonOf(std::string_view name) {
    if (text::equalNoCase(name, "OK")) return kOk;
    if (text::equalNoCase(name, "Yes")) return kYes;
    if (text::equalNoCase(name, "No")) return kNo;
    return kCancel;
}

bool hasButton(unsigned flags, int button) {
    switch (flags & 0xF) {
        case kBoxOk:
            return button == kOk;
        case kBoxOkCancel:
            return button == kOk || button == kCancel;
        case kBoxYesNo:
            return button == kYes || button == kNo;
        default:
            return button != kOk;
    }
}

std::string buttonText(int button) {
    return button == kOk ? "OK" : button == kYes ? "Yes" : button == kNo ? "No" : "Cancel";
}

}  // namespace

void ScriptedBackend::answer(int resource, std::vector<Step> steps) {
    scripts_[resource].push_back(std::move(steps));
}

std::vector<std::string> ScriptedBackend::undone() const {
    std::vector<std::string> all = failed_, left = unused();
    all.insert(all.end(), left.begin(), left.end());
    return all;
}

std::vector<std::string> ScriptedBackend::unused() const {
    std::vector<std::string> left;
    for (const auto& [resource, queue] : scripts_)
        for (size_t i = 0; i < queue.size(); ++i)
            left.push_back("steps for dialog " + std::to_string(resource));
    for (const std::string& box : boxes_) left.push_back("box \"" + box + "\"");
    for (const QuestionAnswer& question : questions_)
        left.push_back("box-for \"" + question.named + "\" \"" + question.button + "\"");
    for (const std::string& file : files_) left.push_back("file \"" + file + "\"");
    return left;
}

bool ScriptedBackend::open(Dialog& dialog) {
    log_.push_back(text::format("dialog %d: ", dialog.resource()) + dialog.title());
    std::deque<Step> steps;
    auto script = scripts_.find(dialog.resource());
    if (script != scripts_.end() && !script->second.empty()) {
        const std::vector<Step>& first = script->second.front();
        steps.assign(first.begin(), first.end());
        script->second.pop_front();
    }
    running_.emplace_back(&dialog, std::move(steps));
    return true;
}

void ScriptedBackend::close(Dialog& dialog) {
    for (size_t i = running_.size(); i-- > 0;) {
        if (running_[i].first != &dialog) continue;
        for (const Step& step : running_[i].second) {
            log_.push_back("  left over: " + loggedText(dialog, step));
            failed_.push_back(text::format("dialog %d left over ", dialog.resource()) +
                              loggedText(dialog, step));
        }
        running_.erase(running_.begin() + static_cast<long>(i));
        log_.push_back(
            text::format("dialog %d ended with %s", dialog.resource(), buttonText(dialog.result()).c_str()));
        return;
    }
}

std::optional<Step> ScriptedBackend::nextStep(Dialog& dialog) {
    for (auto& [running, steps] : running_) {
        if (running != &dialog || steps.empty()) continue;
        Step step = std::move(steps.front());
        steps.pop_front();
        return step;
    }
    return std::nullopt;
}

void ScriptedBackend::waitForEvent(Dialog& dialog) {
    std::optional<Step> step = nextStep(dialog);
    const bool isScripted = step.has_value();
    if (!step && asker_) step = asker_->step(modelText(dialog));
    if (!step) {
        log_.push_back(
            text::format("  dialog %d has no steps left and is cancelled; it showed\n", dialog.resource()) +
            modelText(dialog));
        dialog.userClose();
        if (dialog.running()) dialog.end(kCancel);
        return;
    }
    take(dialog, *step, isScripted);
}

void ScriptedBackend::takeEvents(Dialog& dialog) {
    if (std::optional<Step> step = nextStep(dialog)) take(dialog, *step, true);
}

// Work shows itself to a script that has something to answer, and then at each of its steps.
std::optional<std::chrono::milliseconds> ScriptedBackend::pictureInterval(int resource) {
    auto script = scripts_.find(resource);
    if (script == scripts_.end() || script->second.empty()) return std::nullopt;
    return std::chrono::milliseconds(0);
}

void ScriptedBackend::take(Dialog& dialog, const Step& step, bool isScripted) {
    if (step.kind == Step::Kind::Show) {
        log_.push_back(modelText(dialog));
        return;
    }
    // Written down first, so that what the step brings about stands below it.
    size_t line = log_.size();
    log_.push_back("  " + loggedText(dialog, step));
    std::string problem = perform(dialog, step);
    if (problem.empty()) return;
    if (line < log_.size()) log_[line] += ": " + problem;
    if (isScripted)
        failed_.push_back(text::format("dialog %d refused ", dialog.resource()) + loggedText(dialog, step) +
                          ": " + problem);
}

std::string ScriptedBackend::perform(Dialog& dialog, const Step& step) {
    switch (step.kind) {
        case Step::Kind::Show:
            log_.push_back(modelText(dialog));
            return {};
        case Step::Kind::Close:
            return dialog.userClose();
        case Step::Kind::Drop:
            return dialog.userDrop(step.files);
        case Step::Kind::Menu:
            return performMenu(dialog, step.text);
        case Step::Kind::Key: {
            std::optional<Key> key = parseKey(step.text);
            if (!key) return "\"" + step.text + "\" is no key";
            std::string problem = dialog.userKey(*key);
            if (dialog.running()) dialog.userKeyUp(*key);
            return problem;
        }
        case Step::Kind::Cell:
        case Step::Kind::ClickCell:
        case Step::Kind::DoubleClickCell: {
            Grid* grid = gridOf(dialog, step.control);
            return grid ? performCell(dialog, *grid, step) : "there is no grid";
        }
        default:
            break;
    }
    Control* control = dialog.find(step.control);
    if (!control) return "there is no control \"" + step.control + "\"";
    switch (step.kind) {
        case Step::Kind::Text:
            return dialog.userText(*control, step.text);
        case Step::Kind::Pick:
            return dialog.userPick(*control, indexOf(*control, step.text));
        case Step::Kind::PickAlso:
            return dialog.userPick(*control, indexOf(*control, step.text), true);
        case Step::Kind::DoubleClick:
            return dialog.userDoubleClick(*control, indexOf(*control, step.text));
        case Step::Kind::Check:
            if (auto* tree = dynamic_cast<Tree*>(control))
                return dialog.userCheckNode(*tree, indexOf(*tree, step.text), step.on);
            return dialog.userCheck(*control, step.on);
        case Step::Kind::Focus:
            return dialog.userFocus(*control);
        default:
            return dialog.userClick(*control);
    }
}

std::optional<std::string> ScriptedBackend::nextAnswer(std::deque<std::string>& queue,
                                                       const std::string& question) {
    if (queue.empty()) return asker_ ? asker_->answer(question) : std::nullopt;
    std::string answer = std::move(queue.front());
    queue.pop_front();
    return answer;
}

int ScriptedBackend::messageBox(const MessageBox& box) {
    unsigned buttons = box.flags & 0xF;
    // Without an answer the box is dismissed: by its only button, or by the one that does nothing.
    int answer = buttons == kBoxOk ? kOk : buttons == kBoxYesNo ? kNo : kCancel;
    std::string shown = "box [" + box.title + "] \"" + box.text + text::format("\" flags 0x%x", box.flags);
    if (std::optional<std::string> given = nextAnswer(boxes_, shown)) answer = buttonOf(*given);
    log_.push_back(shown + " -> " + buttonText(answer));
    return answer;
}

namespace {

// Also by what the button says.
int buttonOf(const OwnQuestion& question, const std::string& name) {
    if (!question.yes.empty() && name == plainCaption(question.yes)) return kYes;
    if (!question.no.empty() && name == plainCaption(question.no)) return kNo;
    return buttonOf(name);
}

}  // namespace

int ScriptedBackend::ask(const OwnQuestion& question) {
    std::string shown = "question [" + question.title + "] \"" + question.text +
                        text::format("\" flags 0x%x", question.flags);
    auto given = std::find_if(questions_.begin(), questions_.end(), [&](const QuestionAnswer& answer) {
        return answer.named == question.title || text::startsWith(question.text, answer.named);
    });
    std::optional<std::string> button;
    if (given != questions_.end()) {
        button = given->button;
        if (!hasButton(question.flags, buttonOf(question, *button)))
            failed_.push_back("refused \"" + *button + "\" for the " + shown);
        questions_.erase(given);
    } else if (asker_) {
        button = asker_->answer(shown);
    }
    const int pressed = button ? buttonOf(question, *button) : 0;
    const bool answered = button && hasButton(question.flags, pressed);
    const int answer = answered ? pressed : question.defaultAnswer;
    log_.push_back(shown + " -> " + buttonText(answer) + (answered ? "" : " by default"));
    return answer;
}

std::optional<std::string> ScriptedBackend::fileBox(const FileBox& box) {
    std::string shown = std::string(box.save ? "save file" : "open file") + " box \"" + box.filter +
                        "\" pattern \"" + box.pattern + "\" in \"" + box.folder + "\"";
    if (box.folders) shown = "folder box in \"" + box.folder + "\"";
    std::optional<std::string> path = nextAnswer(files_, shown);
    if (path && path->empty()) path.reset();
    log_.push_back(shown + " -> " + path.value_or("Cancel"));
    return path;
}

std::vector<std::string> ScriptedBackend::severalFiles(const FileBox& box) {
    const std::optional<std::string> paths = fileBox(box);
    return paths ? text::split(*paths, '\n') : std::vector<std::string>();
}

bool ScriptedBackend::showInViewer(const std::string& path) {
    log_.push_back("viewer \"" + path + "\"");
    return true;
}

void ScriptedBackend::information(const std::string& text, int) {
    log_.push_back("information \"" + text + "\"");
}

bool ScriptedBackend::print(const PrintJob& job) {
    log_.push_back("print job [" + job.title + "] of " + std::to_string(job.pages.size()) + " pages");
    for (size_t page = 0; page < job.pages.size(); ++page) {
        if (job.onPage && !job.onPage(page)) return true;
        std::string shown = "page " + std::to_string(page + 1);
        for (int row = job.pages[page].first; row <= job.pages[page].last; ++row) {
            std::vector<std::string> cells;
            for (int column = 1; column <= job.table.columns(); ++column)
                cells.push_back(job.table.text(column, row));
            shown += "\n" + text::join(cells, " | ");
        }
        if (!job.foot.empty()) shown += "\n" + job.foot + " | " + pageText(job, page);
        log_.push_back(shown);
    }
    return true;
}

std::unique_ptr<FontMetrics> ScriptedBackend::metrics(const Font& font) {
    return std::make_unique<FixedFontMetrics>(font.height, font.width ? font.width : (font.height + 1) / 2);
}

}  // namespace ui
