#include "classes.h"

#include "session.h"
#include "targets.h"

#include <fmt/format.h>

namespace {

void print(const std::string &text) {
    fmt::print("{}", text);
}

using Classes = std::vector<const broker::Class *>;

Classes withoutSuperclass(const broker::Schema &schema) {
    Classes roots;
    for (const auto &one : schema.classes) {
        if (one->superclass == nullptr) {
            roots.push_back(one.get());
        }
    }
    return roots;
}

// The classes right below a class, or all without a superclass when none is named.
Classes below(const broker::Broker &broker, const std::string &name) {
    return name.empty() ? withoutSuperclass(broker::schemaOf(broker)) : resolveClass(broker, name).subclasses;
}

std::string tree(const broker::Class &cls, const std::string &indent) {
    std::string text = fmt::format("{}{}{}\n", indent, cls.name, cls.isAbstract ? " (abstract)" : "");
    for (const broker::Class *subclass : cls.subclasses) {
        text += tree(*subclass, indent + "  ");
    }
    return text;
}

} // namespace

void getClass(const ClassOptions &options) {
    const Session session = openSession("", "");
    print(options.format->classes({&resolveClass(*session.broker, options.target)}));
}

void enumerateClasses(const ClassOptions &options) {
    const Session session = openSession("", "");
    Classes classes;
    for (const broker::Class *cls : below(*session.broker, options.target)) {
        const Classes all = options.deep ? broker::withSubclasses(*cls) : Classes{cls};
        classes.insert(classes.end(), all.begin(), all.end());
    }
    print((options.namesOnly ? options.format->classNames : options.format->classes)(classes));
}

void findClasses(const ClassOptions &options) {
    const Session session = openSession("", "");
    const std::string &glob = options.target;
    print(
        options.format->classNames(findByName(broker::schemaOf(*session.broker), glob.empty() ? "*" : glob)));
}

void printClassTree(const ClassOptions &options) {
    const Session session = openSession("", "");
    const Classes roots = options.target.empty() ? withoutSuperclass(broker::schemaOf(*session.broker))
                                                 : Classes{&resolveClass(*session.broker, options.target)};
    for (const broker::Class *root : roots) {
        print(tree(*root, ""));
    }
}
