#include "platform/dao/odbc/handles.h"

#include <algorithm>

#include "platform/dao/dao.h"
#include "platform/dao/odbc/wide_text.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

// "[unixODBC][Driver]ERROR: it is so;\nError while executing" as "ERROR: it is so".
std::string cleaned(std::string_view s) {
    while (!s.empty() && s.front() == '[' && s.find(']') != std::string_view::npos)
        s = text::trimLeft(s.substr(s.find(']') + 1));
    std::vector<std::string> lines;
    for (const std::string& line : text::split(s, '\n')) {
        std::string_view words = text::trim(line);
        while (!words.empty() && words.back() == ';') words.remove_suffix(1);
        // What the drivers add to the server's words says nothing more.
        if (words.empty() || text::startsWith(words, "Error while ")) continue;
        lines.emplace_back(words);
    }
    return text::join(lines, " ");
}

}  // namespace

Handle::Handle(SQLSMALLINT kind, SQLHANDLE parent) : kind_(kind) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_)))
        throw CDaoException("The ODBC driver manager has no room for another connection or statement.");
}

Handle::~Handle() {
    SQLFreeHandle(kind_, handle_);
}

SQLHENV environment() {
    // Never freed: connections may be closed by other objects at the end of the process.
    static Handle* handle = [] {
        auto made = new Handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
        SQLSetEnvAttr(made->get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        return made;
    }();
    return handle->get();
}

std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT kind, SQLHANDLE handle) {
    std::vector<Diagnostic> all;
    for (SQLSMALLINT number = 1;; ++number) {
        SQLWCHAR state[6] = {}, words[2048] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        SQLRETURN result = SQLGetDiagRecW(kind, handle, number, state, &native, words,
                                          static_cast<SQLSMALLINT>(std::size(words)), &length);
        if (!SQL_SUCCEEDED(result)) return all;
        size_t units = std::clamp<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)), 0,
                                          std::size(words) - 1);
        Diagnostic diagnostic{fromWide(state, 5), cleaned(fromWide(words, units))};
        bool known = std::any_of(all.begin(), all.end(),
                                 [&](const Diagnostic& other) { return other.text == diagnostic.text; });
        if (!diagnostic.text.empty() && !known) all.push_back(std::move(diagnostic));
    }
}

std::string sentenceOf(const std::vector<Diagnostic>& diagnostics) {
    std::vector<std::string> texts;
    for (const Diagnostic& diagnostic : diagnostics) texts.push_back(diagnostic.text);
    std::string sentence = text::join(texts, " ");
    if (sentence.empty()) return "The driver does not say why.";
    return std::string_view(".?!").find(sentence.back()) == std::string_view::npos ? sentence + "."
                                                                                   : sentence;
}

void check(SQLRETURN result, const Handle& handle) {
    if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
    throw CDaoException("The server cannot do that: " +
                        sentenceOf(diagnosticsOf(handle.kind(), handle.get())));
}

}  // namespace dao::odbc
