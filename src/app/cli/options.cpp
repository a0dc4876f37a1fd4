#include "app/cli/options.h"

#include <charconv>

#include "controls/utf8_text.h"
#include "store/client_code.h"

namespace brenlow::cli {

Options::Options(const std::vector<std::string>& args, const std::set<std::string>& flags) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a.rfind("--", 0) != 0 || a.size() == 2) {
            positional_.push_back(a);
            continue;
        }
        std::string name = a.substr(2), value;
        if (const auto eq = name.find('='); eq != std::string::npos) {
            value = name.substr(eq + 1);
            name = name.substr(0, eq);
        } else if (flags.count(name)) {
            value = "1";
        } else {
            if (i + 1 >= args.size()) throw UsageError("Option --" + name + " needs a value.");
            value = args[++i];
        }
        if (!is_valid_utf8(value)) throw UsageError("Option --" + name + " is not valid UTF-8 text.");
        values_[name] = value;
    }
    for (std::size_t i = 0; i < positional_.size(); ++i) {
        if (!is_valid_utf8(positional_[i]))
            throw UsageError("Argument " + std::to_string(i + 1) + " is not valid UTF-8 text.");
    }
}

void refuse_if_longer(const std::string& what, const std::string& value, std::size_t max_chars) {
    if (max_chars > 0 && utf8_length(value) > max_chars)
        throw UsageError(what + " was refused: \"" + value + "\" is longer than " +
                         std::to_string(max_chars) + " characters, the length of its field.");
}

std::optional<std::string> Options::text(const std::string& name, std::size_t max_chars) const {
    auto v = get(name);
    if (v && max_chars > 0 && utf8_length(*v) > max_chars)
        throw UsageError("Option --" + name + " is longer than " + std::to_string(max_chars) +
                         " characters.");
    return v;
}

std::optional<std::string> Options::get(const std::string& name) const {
    const auto it = values_.find(name);
    if (it == values_.end()) return std::nullopt;
    return it->second;
}

std::string Options::require(const std::string& name) const {
    auto v = get(name);
    if (!v || v->empty()) throw UsageError("Option --" + name + " is required.");
    return *v;
}

std::optional<int> Options::get_int(const std::string& name, int lo, int hi) const {
    const auto v = get(name);
    if (!v) return std::nullopt;
    int n = 0;
    const auto [p, ec] = std::from_chars(v->data(), v->data() + v->size(), n);
    if (ec != std::errc() || p != v->data() + v->size() || n < lo || n > hi)
        throw UsageError("Option --" + name + " must be a whole number from " + std::to_string(lo) + " to " +
                         std::to_string(hi) + ", not \"" + *v + "\".");
    return n;
}

std::string Options::client() const {
    require("client");
    try {
        return store::client_code(*get("client"));
    } catch (const store::BadClientCode& e) {
        throw UsageError(std::string("Option --client: ") + e.what());
    }
}

int Options::require_int(const std::string& name, int lo, int hi) const {
    require(name);
    return *get_int(name, lo, hi);
}

void Options::reject_unknown(const std::set<std::string>& known) const {
    for (const auto& [name, value] : values_)
        if (!known.count(name)) throw UsageError("Unknown option --" + name + ".");
}

}  // namespace brenlow::cli
