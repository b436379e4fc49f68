#include "hostcad/editor/variables.h"

#include "hostcad/drawing/current_drawing.h"
#include "platform/ads/result_buffer.h"
#include "platform/plane/angle.h"
#include "platform/text/text.h"

namespace hostcad {

VariableValue VariableValue::ofInteger(long n) {
    VariableValue v;
    v.type = RTSHORT;
    v.integer = n;
    return v;
}

VariableValue VariableValue::ofReal(double r) {
    VariableValue v;
    v.type = RTREAL;
    v.real = r;
    return v;
}

VariableValue VariableValue::ofPoint(const Point& p, bool isFlat) {
    VariableValue v;
    v.type = isFlat ? RTPOINT : RT3DPOINT;
    v.point = p;
    return v;
}

VariableValue VariableValue::ofText(std::string s) {
    VariableValue v;
    v.type = RTSTR;
    v.text = std::move(s);
    return v;
}

namespace {

struct IntegerVariable {
    const char* name;
    int headerCode;  // 0: of the process
    long value;
};

constexpr IntegerVariable kIntegers[] = {
    // Of the process.
    {"APERTURE", 0, 10},
    {"ATTDIA", 0, 0},
    {"ATTREQ", 0, 1},
    {"AUTOSNAP", 0, 63},
    {"BLIPMODE", 0, 0},
    {"CMDDIA", 0, 1},
    {"CMDECHO", 0, 1},
    {"CVPORT", 0, 2},
    {"DRAGMODE", 0, 2},
    {"ERRNO", 0, 0},
    {"EXPERT", 0, 0},
    {"FILEDIA", 0, 0},
    {"GRIPS", 0, 1},
    {"HIGHLIGHT", 0, 1},
    {"MENUECHO", 0, 0},
    {"NOMUTT", 0, 0},
    {"OSMODE", 0, 0},
    {"PICKADD", 0, 1},
    {"PICKAUTO", 0, 1},
    {"PICKBOX", 0, 3},
    {"PICKFIRST", 0, 1},
    {"PICKSTYLE", 0, 1},
    {"PLINETYPE", 0, 2},
    {"SNAPMODE", 0, 0},
    {"GRIDMODE", 0, 0},
    {"TEXTEVAL", 0, 0},
    {"UCSICON", 0, 3},
    // Of the drawing.
    {"ANGDIR", 70, 0},
    {"ATTMODE", 70, 1},
    {"AUNITS", 70, 0},
    {"AUPREC", 70, 0},
    {"CELWEIGHT", 370, -1},
    {"DIMALT", 70, 0},
    {"DIMASO", 70, 1},
    {"DIMAUNIT", 70, 0},
    {"DIMDEC", 70, 4},
    {"DIMTAD", 70, 0},
    {"DIMZIN", 70, 0},
    {"DRAGVS", 70, 0},
    {"FILLMODE", 70, 1},
    {"INSUNITS", 70, 0},
    {"LIMCHECK", 70, 0},
    {"LUNITS", 70, 2},
    {"LUPREC", 70, 4},
    {"LWDISPLAY", 290, 0},
    {"MEASUREMENT", 70, 0},
    {"MIRRTEXT", 70, 1},
    {"ORTHOMODE", 70, 0},
    {"PDMODE", 70, 0},
    {"PLINEGEN", 70, 0},
    {"PSLTSCALE", 70, 1},
    {"QTEXTMODE", 70, 0},
    {"REGENMODE", 70, 1},
    {"SPLFRAME", 70, 0},
    {"SPLINESEGS", 70, 8},
    {"SPLINETYPE", 70, 6},
    {"SURFU", 70, 6},
    {"SURFV", 70, 6},
    {"TILEMODE", 70, 1},
    {"TREEDEPTH", 70, 3020},
    {"UNITMODE", 70, 0},
    {"USERI1", 70, 0},
    {"USERI2", 70, 0},
    {"USERI3", 70, 0},
    {"USERI4", 70, 0},
    {"USERI5", 70, 0},
    {"VISRETAIN", 70, 1},
    {"WORLDVIEW", 70, 1},
};

struct RealVariable {
    const char* name;
    int headerCode;
    double value;
};

constexpr RealVariable kReals[] = {
    {"CHAMFERA", 40, 0},   {"CHAMFERB", 40, 0},    {"CELTSCALE", 40, 1},   {"DIMASZ", 40, 0.18},
    {"DIMEXE", 40, 0.18},  {"DIMEXO", 40, 0.0625}, {"DIMGAP", 40, 0.09},   {"DIMLFAC", 40, 1},
    {"DIMSCALE", 40, 1},   {"DIMTXT", 40, 0.18},   {"ELEVATION", 40, 0},   {"FILLETRAD", 40, 0},
    {"LTSCALE", 40, 1},    {"PDSIZE", 40, 0},      {"PLINEWID", 40, 0},    {"SKETCHINC", 40, 0.1},
    {"TEXTSIZE", 40, 0.2}, {"THICKNESS", 40, 0},   {"TRACEWID", 40, 0.05}, {"USERR1", 40, 0},
    {"USERR2", 40, 0},     {"USERR3", 40, 0},      {"USERR4", 40, 0},      {"USERR5", 40, 0},
    {"ANGBASE", 50, 0},    {"AREAGAP", 0, 0},      {"CIRCLERAD", 0, 0},    {"OFFSETDIST", 0, 1},
};

struct PointVariable {
    const char* name;
    bool isFlat;
};

// All of them in the drawing, in group 10.
constexpr PointVariable kPoints[] = {
    {"EXTMIN", false}, {"EXTMAX", false}, {"INSBASE", false}, {"LIMMIN", true},
    {"LIMMAX", true},  {"UCSORG", false}, {"UCSXDIR", false}, {"UCSYDIR", false},
};

struct TextVariable {
    const char* name;
    int headerCode;
    const char* value;
};

constexpr TextVariable kTexts[] = {
    {"CELTYPE", 6, "BYLAYER"},
    {"CLAYER", 8, "0"},
    {"DIMSTYLE", 2, "STANDARD"},
    {"MENU", 6, "."},
    {"TEXTSTYLE", 7, "STANDARD"},
    {"UCSNAME", 2, ""},
    {"DIMPOST", 1, ""},
    {"INSNAME", 0, ""},
    {"USERS1", 0, ""},
    {"USERS2", 0, ""},
    {"USERS3", 0, ""},
    {"USERS4", 0, ""},
    {"USERS5", 0, ""},
    {"LOCALE", 0, "ENU"},
    {"CTAB", 0, "Model"},
};

// A variable keeps its type: whole numbers are taken for reals, and reals without a fraction for integers.
std::optional<VariableValue> converted(const VariableValue& given, short type) {
    VariableValue value = given;
    if (value.type == RTLONG) value.type = RTSHORT;
    bool isPoint = value.type == RTPOINT || value.type == RT3DPOINT;
    if (type == RTREAL && value.type == RTSHORT)
        return VariableValue::ofReal(static_cast<double>(value.integer));
    if (type == RTPOINT && isPoint) return VariableValue::ofPoint(value.point, true);
    if (type == RT3DPOINT && isPoint) return VariableValue::ofPoint(value.point);
    if (type != value.type) return {};
    if (type == RTSHORT && (value.integer < -32768 || value.integer > 32767)) return {};
    return value;
}

}  // namespace

Variables::Variables() {
    auto add = [this](const char* name, int headerCode, VariableValue value) {
        entries_[name] = Entry{std::move(value), headerCode, nullptr, nullptr, false};
    };
    for (const IntegerVariable& v : kIntegers) add(v.name, v.headerCode, VariableValue::ofInteger(v.value));
    for (const RealVariable& v : kReals) add(v.name, v.headerCode, VariableValue::ofReal(v.value));
    for (const PointVariable& v : kPoints) add(v.name, 10, VariableValue::ofPoint({}, v.isFlat));
    for (const TextVariable& v : kTexts) add(v.name, v.headerCode, VariableValue::ofText(v.value));
    add("LASTPOINT", 0, VariableValue::ofPoint({}));
    entries_["UCSXDIR"].value.point = {1, 0, 0};
    entries_["UCSYDIR"].value.point = {0, 1, 0};
    for (const char* name : {"EXTMIN", "EXTMAX", "LOCALE", "UCSNAME", "CVPORT"})
        entries_[name].isFixed = true;
}

void Variables::define(const std::string& name, Getter get, Setter set) {
    entries_[name] = Entry{{}, 0, std::move(get), std::move(set), false};
}

VariableValue Variables::headerValue(const std::string& name, const Entry& entry) const {
    Groups groups = currentDrawing().headerVariable("$" + name);
    if (groups.empty()) return entry.value;
    const Group& group = groups.front();
    VariableValue value = entry.value;
    switch (value.type) {
        case RTSHORT:
            value.integer = group.asInteger();
            break;
        case RTREAL:
            value.real = group.asReal();
            break;
        case RTSTR:
            value.text = group.text();
            break;
        default:
            value.point = group.point();
    }
    if (entry.headerCode == 50) value.real *= plane::kDegree;  // the file has degrees
    return value;
}

void Variables::setHeader(const std::string& name, const Entry& entry, const VariableValue& value) {
    Drawing& drawing = currentDrawing();
    std::string key = "$" + name;
    switch (value.type) {
        case RTSHORT:
            drawing.setHeaderInteger(key, entry.headerCode, value.integer);
            break;
        case RTREAL: {
            double real = entry.headerCode == 50 ? value.real / plane::kDegree : value.real;
            drawing.setHeaderReal(key, entry.headerCode, real);
            break;
        }
        case RTSTR:
            drawing.setHeaderText(key, entry.headerCode, value.text);
            break;
        default:
            drawing.setHeaderPoint(key, entry.headerCode, value.point.x, value.point.y, value.point.z);
    }
}

std::optional<VariableValue> Variables::get(std::string_view name) const {
    auto found = entries_.find(text::upper(name));
    if (found == entries_.end()) return {};
    const Entry& entry = found->second;
    if (entry.get) return entry.get();
    return entry.headerCode ? headerValue(found->first, entry) : entry.value;
}

std::string Variables::set(std::string_view name, const VariableValue& given) {
    auto found = entries_.find(text::upper(name));
    if (found == entries_.end()) return "There is no variable " + text::upper(name) + ".";
    Entry& entry = found->second;
    if (entry.isFixed || (entry.get && !entry.setter)) return found->first + " is read only.";
    short type = entry.get ? entry.get().type : entry.value.type;
    std::optional<VariableValue> value = converted(given, type);
    if (!value) return found->first + " takes another kind of value.";
    if (entry.setter) return entry.setter(*value);
    if (entry.headerCode)
        setHeader(found->first, entry, *value);
    else
        entry.value = *value;
    return "";
}

long Variables::integer(std::string_view name) const {
    auto value = get(name);
    return value ? value->integer : 0;
}

double Variables::real(std::string_view name) const {
    auto value = get(name);
    return value ? value->real : 0;
}

std::string Variables::text(std::string_view name) const {
    auto value = get(name);
    return value ? value->text : "";
}

Point Variables::point(std::string_view name) const {
    auto value = get(name);
    return value ? value->point : Point{};
}

}  // namespace hostcad
