#include "schema.h"

#include <algorithm>

namespace broker {

namespace {

constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

template <typename Named> const Named *findNamed(const std::vector<Named> &all, std::string_view name) {
    const auto found = std::ranges::find_if(all, [&](const Named &one) { return sameName(one.name, name); });
    return found == all.end() ? nullptr : &*found;
}

} // namespace

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

size_t NameHash::operator()(std::string_view name) const {
    size_t hash = 2166136261U; // FNV-1a
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(lower(c))) * 16777619U;
    }
    return hash;
}

const Class *findClass(const Schema &schema, std::string_view name) {
    const auto found = schema.byName.find(name);
    return found == schema.byName.end() ? nullptr : found->second;
}

const Property *findProperty(const Class &cls, std::string_view name) {
    return findNamed(cls.properties, name);
}

const Method *findMethod(const Class &cls, std::string_view name) {
    return findNamed(cls.methods, name);
}

const Parameter *findParameter(const Method &method, std::string_view name) {
    return findNamed(method.parameters, name);
}

const Qualifier *findQualifier(const std::vector<Qualifier> &qualifiers, std::string_view name) {
    return findNamed(qualifiers, name);
}

bool isA(const Class &cls, const Class &ancestor) {
    const Class *c = &cls;
    while (c != nullptr && c != &ancestor) {
        c = c->superclass;
    }
    return c != nullptr;
}

bool matchesGlob(std::string_view name, std::string_view glob) {
    // Where the last '*' stood, and how much of the name it takes so far.
    size_t star = std::string_view::npos, taken = 0;
    size_t n = 0, g = 0;
    while (n < name.size()) {
        if (g < glob.size() && glob[g] == '*') {
            star = g++;
            taken = n;
        } else if (g < glob.size() && (glob[g] == '?' || lower(glob[g]) == lower(name[n]))) {
            ++g;
            ++n;
        } else if (star != std::string_view::npos) {
            g = star + 1;
            n = ++taken;
        } else {
            return false;
        }
    }
    return glob.find_first_not_of('*', g) == std::string_view::npos;
}

std::vector<const Class *> findClasses(const Schema &schema, std::string_view glob) {
    std::vector<const Class *> found;
    for (const auto &cls : schema.classes) {
        if (matchesGlob(cls->name, glob)) {
            found.push_back(cls.get());
        }
    }
    return found;
}

std::vector<const Class *> withSubclasses(const Class &cls) {
    std::vector<const Class *> all = {&cls};
    for (const Class *subclass : cls.subclasses) {
        const auto below = withSubclasses(*subclass);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

} // namespace broker
