// How a value is written into an attribute where the text that the database has will not do.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

class LinkFormat {
  public:
    // The text as it stands.
    LinkFormat() = default;
    // Numbers with so many decimals, 0 to 9.
    static LinkFormat Decimals(int count);
    // Dates by a form such as "DD.MM.YYYY": YYYY or YY, MMMM (the name of the month), MMM, MM or M, DD or D.
    static LinkFormat DateForm(std::string form);
    static LinkFormat UpperCase();

    // How it is kept: "" for the text as it stands, "N2", "D:DD.MM.YYYY", "U". Nothing for any other code.
    static std::optional<LinkFormat> FromCode(std::string_view code);
    std::string code() const;
    // What a person reads: "2 decimals".
    std::string caption() const;
    // Those that a person can choose from, the text as it stands first.
    static const std::vector<LinkFormat>& Choices();

    // A text that is no number, or no date, stays as it stands.
    std::string apply(const std::string& text) const;
    bool operator==(const LinkFormat&) const = default;

  private:
    enum class Kind { kAsItStands, kDecimals, kDate, kUpperCase };
    LinkFormat(Kind kind, int decimals, std::string form)
        : kind_(kind), decimals_(decimals), form_(std::move(form)) {}

    Kind kind_ = Kind::kAsItStands;
    int decimals_ = 0;
    std::string form_;
};

}  // namespace norvane
