// The CAD host: one object that owns what a session has. A program makes one, with a command line to talk
// over and a view to show, and drives it with lines of input; modules reach it through platform/ads.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "hostcad/editor/command_line.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/drawing_hold.h"
#include "hostcad/editor/kept_copies.h"
#include "hostcad/editor/lost_links.h"
#include "hostcad/editor/modules.h"
#include "hostcad/editor/variables.h"
#include "hostcad/editor/view.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad {

// Where things are, each folder with its separator at the end.
struct Folders {
    std::string program;
    std::string support;  // files of Lisp, menus
    std::string user;     // a person's settings
};

class Host {
  public:
    // All three stay the caller's. There is one host in a process at a time.
    Host(Output& output, InputSource& source, View& view);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // The host of the process; null before it is made.
    static Host* current();

    lisp::Interpreter& lisp() { return *lisp_; }
    CommandLine& commandLine() { return commandLine_; }
    CommandProcessor& commands() { return *commands_; }
    Modules& modules() { return *modules_; }
    Variables& variables() { return variables_; }
    // What is selected, for the user too: the view shows it.
    void select(std::vector<ObjectId> entities);
    ImpliedSelection& selection() { return commandLine_.selection(); }
    View& view() { return view_; }

    void write(std::string_view text) { commandLine_.write(text); }
    // Says what went wrong, on a line of its own. Where in the program it did is kept.
    void tell(const lisp::Error& error);
    // Where the error that was told last arose, as lisp::Error::trace() has it.
    const std::string& lastTrace() const { return lastTrace_; }
    Answer ask(Prompt prompt);
    Conventions conventions() const;
    void setLastPoint(const Point& point);

    // --- What a program does with the host ---
    // A line typed at the command prompt: a command's name, a Lisp expression, or !symbol. Errors are told on
    // the command line; false after one.
    bool runLine(const std::string& line);
    // The same for what a module does without a line, as one step of undo.
    bool perform(const std::function<void()>& action);
    // A file of Lisp. Commands that it leaves unfinished are finished with the user. Throws lisp::Error.
    void runScript(const std::string& path);
    // Ends what is going on, as Escape does. May come from a signal handler.
    void cancel() { lisp_->cancel(); }

    // --- Drawings: "" when done, else why not ---
    std::string openDrawing(const std::string& path);
    // An empty drawing, or one that begins as another.
    std::string newDrawing(const std::string& model = "");
    // An empty path saves under the drawing's own name; another one becomes its name, unless it is a copy.
    // The version before stays as .bak.
    std::string saveDrawing(const std::string& path = "", bool isCopy = false);
    // The full path of the file that was saved last.
    const std::string& lastSaved() const { return lastSaved_; }
    // Opens the copy of a program that has crashed, as its drawing with changes that are not saved.
    std::string recoverDrawing(const KeptCopies::LeftBehind& copy);

    // A drawing that is opened is held from now on: other programs open it read-only, and do not save it.
    void setHoldsDrawings(bool holds) { holdsDrawings_ = holds; }
    // Who holds the drawing, so that it was opened read-only here; "" when nobody does.
    const std::string& holder() const { return hold_.holder(); }
    KeptCopies& keptCopies() { return keptCopies_; }

    // --- Files ---
    // The path of a file: as given, beside the drawing, or in a support folder. "" when it is nowhere.
    std::string findFile(const std::string& name) const;
    // A folder with its separator at the end; folders are looked through in the order of adding.
    void addSupportFolder(const std::string& folder);
    // Sets also the Lisp symbols that say where things are: exedir$, lspdir$, usrdir$, and tmpdir$.
    void setFolders(const Folders& folders);
    const Folders& folders() const { return folders_; }

    // --- View ---
    const ViewBox& viewBox() const { return viewBox_; }
    // Keeps it in the drawing, where that has a place for views, and shows it.
    void setViewBox(const Point& centre, double height);
    // What the user has moved the view to by hand: no command and no change of the drawing. `begins`: with
    // it a movement begins, to the start of which the user can go back.
    void noteViewBox(const ViewBox& box, bool begins);
    // Back to what was shown before the last change of the view; false when there is no earlier one.
    bool showEarlierView();
    // The same as a command: it is kept in the drawing.
    void restoreViewBox();

    bool wantsQuit() const { return wantsQuit_; }
    void quit() { wantsQuit_ = true; }

  private:
    void defineVariables();
    bool run(const std::function<bool()>& work);
    bool feedTyped(std::string_view typed);
    std::string replaceDrawing(std::unique_ptr<class Drawing> drawing);
    void holdDrawing();
    void tellWhatIsNotInFile();
    void readViewBox();
    void keepViewBox();
    void rememberViewBox();

    CommandLine commandLine_;
    View& view_;
    Variables variables_;
    std::unique_ptr<lisp::Interpreter> lisp_;
    std::unique_ptr<LostLinks> lostLinks_;
    std::string lastTrace_;
    std::unique_ptr<CommandProcessor> commands_;
    std::unique_ptr<Modules> modules_;
    Folders folders_;
    std::vector<std::string> supportFolders_;
    DrawingHold hold_;
    bool holdsDrawings_ = false;
    std::string lastSaved_;
    KeptCopies keptCopies_;
    ViewBox viewBox_;
    std::vector<ViewBox> earlierViews_;
    bool wantsQuit_ = false;
};

}  // namespace hostcad
