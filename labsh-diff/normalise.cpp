// temporary stand-in
#include "normalise.h"
namespace ldiff {
namespace { constexpr Rule R[] = {{"direcciones", "direcciones"}}; }
std::span<const Rule> Rules() { return R; }
std::vector<Value> FindValues(std::string_view text, const RunFacts &f, const std::vector<bool> &on) {
    std::vector<Value> v;
    if (!on[0]) return v;
    for (size_t i = 0; i + 2 < text.size(); i++) {
        if (text[i] == '0' && text[i + 1] == 'x') {
            size_t j = i + 2;
            while (j < text.size() && isxdigit((unsigned char)text[j])) j++;
            if (j - i > 6) { v.push_back({i, j, "A"}); i = j; }
        }
        if (!f.dir.empty() && text.substr(i, f.dir.size()) == f.dir) { v.push_back({i, i + f.dir.size(), "DIR", true}); i += f.dir.size() - 1; }
    }
    return v;
}
std::string Reorder(std::string_view text, const std::vector<bool> &) { return std::string(text); }
}
