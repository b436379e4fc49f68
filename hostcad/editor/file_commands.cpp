// OPEN, NEW, SAVE, QSAVE, SAVEAS, COMPACTDATABASE, QUIT.
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/file_boxes.h"
#include "hostcad/editor/host.h"
#include "platform/dao/dao.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace hostcad {

namespace {

class FileCommand : public Command {
  public:
    using Command::Command;
    // The drawing that the step would belong to may be gone at the end.
    bool isUndoable() const override { return false; }

  protected:
    // The user likes boxes, and no program gives the answers.
    bool wantsBoxes() { return host_.variables().integer("FILEDIA") != 0 && !host_.commands().isScripted(); }

    // Goes on at once when nothing would be lost, else asks: in a box, or on the command line.
    void unlessChangesAreKept(const std::function<void()>& goOn) {
        if (!currentDrawing().modified()) {
            goOn();
            return;
        }
        if (wantsBoxes()) {
            if (settleChanges(host_)) goOn();
            return;
        }
        ask(
            Prompt::Kind::Keyword,
            "\nThe drawing has changes that are not saved. Discard them? [Yes/No] <No>: ",
            [goOn](const Answer& answer) {
                if (answer.isKeyword("Yes")) goOn();
            },
            "Yes No");
    }

    // The name of a file: from a box where the user likes boxes, else from the command line.
    void askName(const std::string& prompt, bool isSaving,
                 const std::function<void(const std::string&)>& use) {
        if (wantsBoxes()) {
            useBox(isSaving, use);
            return;
        }
        ask(Prompt::Kind::Line, prompt, [this, isSaving, use](const Answer& answer) {
            if (answer.text == "~")
                useBox(isSaving, use);
            else
                use(answer.text);
        });
    }

    void report(const std::string& problem) {
        if (problem.empty()) return;
        if (wantsBoxes())
            showProblem(host_, problem);
        else
            say("\n" + problem + "\n");
    }

    // Saves, and says where.
    void save(const std::string& name, bool isCopy = false) {
        if (wantsBoxes()) {
            saveWithBoxes(host_, name, isCopy);
            return;
        }
        std::string problem = host_.saveDrawing(name, isCopy);
        report(problem);
        if (problem.empty()) note("\nSaved as " + host_.lastSaved() + ".\n");
    }

  private:
    void useBox(bool isSaving, const std::function<void(const std::string&)>& use) {
        if (std::optional<std::string> path = chooseDrawing(isSaving)) use(*path);
    }
};

class OpenCommand : public FileCommand {
  public:
    using FileCommand::FileCommand;
    void start() override {
        unlessChangesAreKept([this] {
            askName("\nEnter name of drawing to open: ", false, [this](const std::string& name) {
                if (!name.empty()) report(host_.openDrawing(name));
            });
        });
    }
};

class NewCommand : public FileCommand {
  public:
    using FileCommand::FileCommand;
    void start() override {
        unlessChangesAreKept([this] {
            ask(Prompt::Kind::Line, "\nEnter template file name or [. (for none)] <.>: ",
                [this](const Answer& answer) { makeFrom(answer.text); });
        });
    }

  private:
    void makeFrom(const std::string& name) { report(host_.newDrawing(name == "." ? "" : name)); }
};

class SaveCommand : public FileCommand {
  public:
    // isQuick: under the drawing's own name, where it has one, without asking.
    SaveCommand(Host& host, bool isQuick) : FileCommand(host), isQuick_(isQuick) {}
    void start() override {
        const std::string& own = currentDrawing().path();
        if (isQuick_ && !own.empty()) {
            save(own);
            return;
        }
        askName("\nSave drawing as <" + own + ">: ", true,
                [this](const std::string& name) { save(name, !currentDrawing().path().empty()); });
    }

  private:
    bool isQuick_;
};

class SaveAsCommand : public FileCommand {
  public:
    using FileCommand::FileCommand;
    void start() override { askVersion(); }

  private:
    void askVersion() {
        const DxfFormat& format = currentDrawing().format();
        std::string now = versionName(format.version) + (format.binary ? ", binary" : ", text");
        ask(
            Prompt::Kind::Keyword,
            "\nEnter file version or kind [R12/R2000/R2004/R2007/R2010/R2013/R2018/Binary/Text] <" + now +
                ">: ",
            [this](const Answer& answer) { takeVersion(answer); },
            "R12 R2000,2000 R2004,2004 R2007,2007 R2010,2010 R2013,2013 R2018,2018 Binary Text");
    }

    void takeVersion(const Answer& answer) {
        if (answer.kind == Answer::Kind::None) {
            askName("\nSave drawing as <" + currentDrawing().path() + ">: ", true,
                    [this](const std::string& name) { saveUnder(name); });
            return;
        }
        DxfFormat format = currentDrawing().format();
        if (answer.text == "Binary" || answer.text == "Text")
            format.binary = answer.text == "Binary";
        else
            versionOfName(answer.text, format.version);
        currentDrawing().setFormat(format);
        askVersion();
    }

    void saveUnder(const std::string& name) {
        std::string path = files::native(name);
        if (!path.empty() && files::extensionOf(path).empty()) path += ".dxf";
        bool isForeign = !path.empty() && files::exists(path) && path != currentDrawing().path();
        if (!isForeign || wantsBoxes()) {
            save(path);
            return;
        }
        ask(
            Prompt::Kind::Keyword, "\nA file of that name exists. Replace it? [Yes/No] <No>: ",
            [this, path](const Answer& answer) {
                if (answer.isKeyword("Yes")) save(path);
            },
            "Yes No");
    }
};

// Makes a database small again, and saves what can be read of a damaged one.
class CompactDatabaseCommand : public FileCommand {
  public:
    using FileCommand::FileCommand;
    void start() override {
        if (wantsBoxes()) {
            if (std::optional<std::string> path = chooseDatabase(kTitle)) compact(*path);
            return;
        }
        ask(Prompt::Kind::Line, "\nEnter name of database to compact: ", [this](const Answer& answer) {
            if (!answer.text.empty()) compact(files::native(answer.text));
        });
    }

  private:
    static constexpr const char* kTitle = "Compact and Repair Database";

    // What has become of it is told on the command line, and in a box where boxes are wanted.
    void compact(const std::string& path) {
        std::string report;
        bool isWell = false;
        try {
            const dao::CompactReport done =
                dao::compactDatabase(path, dao::ConnectString(), [this](size_t table, size_t all) {
                    note("\rTable " + std::to_string(table + 1) + " of " + std::to_string(all) + "    ");
                    if (ui::backend()) ui::backend()->refresh();
                });
            report = text(path, done);
            isWell = done.losses.empty();
        } catch (const CDaoException& error) {
            report = error.description();
        }
        say("\r" + report + "\n");
        if (!wantsBoxes()) return;
        if (isWell)
            ui::reportSuccess(kTitle, report);
        else
            ui::messageBox(kTitle, report, ui::kBoxOk | ui::kBoxExclamation);
    }

    static std::string text(const std::string& path, const dao::CompactReport& report) {
        std::string out = path + ": " + std::to_string(report.bytesBefore) + " bytes before, " +
                          std::to_string(report.bytesAfter) + " bytes now.";
        for (const std::string& loss : report.losses) out += "\n" + loss;
        if (!report.kept.empty()) out += "\nThe damaged file is kept as " + report.kept + ".";
        return out;
    }
};

class QuitCommand : public FileCommand {
  public:
    using FileCommand::FileCommand;
    void start() override {
        unlessChangesAreKept([this] { host_.quit(); });
    }
};

}  // namespace

void defineFileCommands(CommandProcessor& commands) {
    commands.define<OpenCommand>("OPEN");
    commands.define<NewCommand>("NEW");
    commands.define<SaveCommand>("SAVE", false);
    commands.define<SaveCommand>("QSAVE", true);
    commands.define<SaveAsCommand>("SAVEAS");
    commands.define<CompactDatabaseCommand>("COMPACTDATABASE");
    commands.define<QuitCommand>("QUIT");
}

}  // namespace hostcad
