// Asking the user on behalf of modules and Lisp.
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "hostcad/editor/object_selection.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

using hostcad::Answer;
using hostcad::Host;
using hostcad::Point;
using hostcad::Prompt;
using hostcad::VariableValue;

namespace {

constexpr size_t kInputSize = 512;
// Values of ERRNO after a prompt for an entity.
constexpr int kNothingThere = 7;
constexpr int kEnter = 52;

void copyText(const std::string& text, char* result) {
    std::string_view fitting = text::cutToBytes(text, kInputSize - 1);
    std::memcpy(result, fitting.data(), fitting.size());
    result[fitting.size()] = '\0';
}

Prompt promptOf(Prompt::Kind kind, const char* text, const ads_real* base = nullptr) {
    Prompt prompt;
    prompt.kind = kind;
    prompt.text = text ? text : "";
    if (base) prompt.base = hostcad::pointOf(base);
    return prompt;
}

int statusOf(const Answer& answer) {
    switch (answer.kind) {
        case Answer::Kind::Value:
            return RTNORM;
        case Answer::Kind::None:
            return RTNONE;
        case Answer::Kind::Keyword:
            return RTKWORD;
        case Answer::Kind::Cancelled:
            return RTCAN;
        case Answer::Kind::NoInput:
            break;
    }
    return RTERROR;
}

// Asks, and says so on the command line when there is nobody to answer.
Answer ask(Prompt prompt) {
    Host* host = Host::current();
    Answer answer;
    answer.kind = Answer::Kind::NoInput;
    if (!host) return answer;
    std::string text(text::trim(prompt.text));
    answer = host->ask(std::move(prompt));
    if (answer.kind == Answer::Kind::NoInput) host->write("\nNothing answers the prompt \"" + text + "\".\n");
    return answer;
}

int askPoint(const ads_real* base, const char* text, ads_point result, bool isCorner = false) {
    Prompt prompt = promptOf(Prompt::Kind::Point, text, base);
    prompt.isCorner = isCorner;
    Answer answer = ask(std::move(prompt));
    if (answer.isValue()) hostcad::setPoint(answer.point, result);
    return statusOf(answer);
}

// A length or an angle. Without a base the user may show it by two points.
int askMeasure(Prompt::Kind kind, const ads_real* base, const char* text, ads_real* result) {
    Prompt prompt = promptOf(kind, text, base);
    Answer answer = ask(prompt);
    if (answer.isValue() && answer.isPoint) {
        prompt.base = answer.point;
        prompt.text = "\nSpecify second point: ";
        answer = ask(prompt);
    }
    if (answer.isValue()) *result = answer.number;
    return statusOf(answer);
}

int entityStatus(Host& host, const Answer& answer) {
    long errorNumber = answer.kind == Answer::Kind::None ? kEnter : 0;
    host.variables().set("ERRNO", VariableValue::ofInteger(errorNumber));
    return statusOf(answer);
}

}  // namespace

extern "C" {

int acedInitGet(int bits, const char* keywords) {
    if (!Host::current()) return RTERROR;
    Host::current()->commandLine().prepare(bits, keywords ? keywords : "");
    return RTNORM;
}

// A keyword is a value here; so is other text where the bit for it is set.
int acedGetKword(const char* prompt, char* result) {
    Answer answer = ask(promptOf(Prompt::Kind::Keyword, prompt));
    if (answer.kind == Answer::Kind::Keyword) {
        copyText(answer.text, result);
        return RTNORM;
    }
    return statusOf(answer);
}

int acedGetInput(char* result) {
    if (!Host::current()) return RTERROR;
    copyText(Host::current()->commandLine().lastWord(), result);
    return RTNORM;
}

int acedGetString(int blanks, const char* prompt, char* result) {
    Answer answer = ask(promptOf(blanks ? Prompt::Kind::Line : Prompt::Kind::Text, prompt));
    if (answer.kind == Answer::Kind::None) {
        *result = '\0';
        return RTNORM;
    }
    if (answer.isValue()) copyText(answer.text, result);
    return statusOf(answer);
}

int acedGetInt(const char* prompt, int* result) {
    Answer answer = ask(promptOf(Prompt::Kind::Integer, prompt));
    if (answer.isValue()) *result = static_cast<int>(answer.number);
    return statusOf(answer);
}

int acedGetReal(const char* prompt, ads_real* result) {
    Answer answer = ask(promptOf(Prompt::Kind::Real, prompt));
    if (answer.isValue()) *result = answer.number;
    return statusOf(answer);
}

int acedGetPoint(const ads_point base, const char* prompt, ads_point result) {
    return askPoint(base, prompt, result);
}
int acedGetCorner(const ads_point base, const char* prompt, ads_point result) {
    return askPoint(base, prompt, result, true);
}

int acedGetDist(const ads_point base, const char* prompt, ads_real* result) {
    return askMeasure(Prompt::Kind::Distance, base, prompt, result);
}

int acedGetAngle(const ads_point base, const char* prompt, ads_real* result) {
    return askMeasure(Prompt::Kind::Angle, base, prompt, result);
}

// Nothing at the point that was picked gives RTERROR, with ERRNO 7.
int acedEntSel(const char* prompt, ads_name entity, ads_point picked) {
    ads_name_clear(entity);
    Answer answer = ask(promptOf(Prompt::Kind::Entity, prompt && *prompt ? prompt : "\nSelect object: "));
    Host* host = Host::current();
    if (!host) return RTERROR;
    if (!answer.isValue()) return entityStatus(*host, answer);
    hostcad::ObjectId id = ads_name_nil(answer.name.data()) ? hostcad::entityAt(*host, answer.point)
                                                            : hostcad::idOf(answer.name.data());
    if (!hostcad::currentDrawing().exists(id)) {
        host->variables().set("ERRNO", VariableValue::ofInteger(kNothingThere));
        return RTERROR;
    }
    hostcad::nameOf(id, entity);
    hostcad::setPoint(answer.point, picked);
    return entityStatus(*host, answer);
}
}
