#pragma once
// Option parsing for the command line: "--name value", "--name=value" and flags.

#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "suite/output_file.h"

namespace brenlow::cli {

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A value typed into a field that holds `max_chars` characters (0: no limit): refused,
// naming `what` ("Option --cost", "The name"), when longer, since the field would keep
// only its first characters.
void refuse_if_longer(const std::string& what, const std::string& value, std::size_t max_chars);

class Options {
public:
    // `flags` are options without a value; every other "--x" takes one. Every value
    // and argument must be UTF-8 text (UsageError naming the option otherwise).
    Options(const std::vector<std::string>& args, const std::set<std::string>& flags);

    const std::vector<std::string>& positional() const { return positional_; }
    bool has(const std::string& name) const { return values_.count(name) > 0; }
    std::optional<std::string> get(const std::string& name) const;
    std::string require(const std::string& name) const;
    int require_int(const std::string& name, int lo, int hi) const;
    // A text option that must fit a field of `max_chars` characters; refused, never
    // cut, when longer.
    std::optional<std::string> text(const std::string& name, std::size_t max_chars) const;
    // --client as stored: trimmed and upper-cased; a code no client can have is refused.
    std::string client() const;
    std::optional<int> get_int(const std::string& name, int lo, int hi) const;
    // Options given but never asked for: a typing slip the user should hear about.
    void reject_unknown(const std::set<std::string>& known) const;

private:
    std::map<std::string, std::string> values_;
    std::vector<std::string> positional_;
};

// A file already at a command's output is replaced only when --yes answers the
// question; without it the command stops there (exit 2) and the file stays as it was.
inline suite::Existing existing_file(const Options& opt) {
    return opt.has("yes") ? suite::Existing::replace : suite::Existing::keep;
}

}  // namespace brenlow::cli
