#include "named_values.h"
#include "output.h"
#include "overview.h"
#include "terminal.h"
#include "text.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <algorithm>

namespace {

// A table's cell. An empty text is told from NULL, which leaves the cell empty.
std::string cell(const CMPIData &data) {
    if (CMIsNullValue(data)) {
        return "";
    }
    const std::string text = printable(broker::textOfValue(data));
    return text.empty() ? "\"\"" : text;
}

using Row = std::vector<std::string>;

// Instances of one class: a column for each property that any of them has.
struct Table {
    std::vector<std::string> names;
    std::vector<Row> rows;
};

size_t columnOf(Table &table, const std::string &name) {
    const auto found = std::find(table.names.begin(), table.names.end(), name);
    if (found != table.names.end()) {
        return static_cast<size_t>(found - table.names.begin());
    }
    table.names.push_back(name);
    return table.names.size() - 1;
}

// The keys come first, whether they were asked for or not: without them nobody can tell the rows apart.
void addInstance(Table &table, const CMPIInstance *instance) {
    std::vector<NamedValue> values = keysOf(CMGetObjectPath(instance, nullptr));
    const std::vector<NamedValue> properties = propertiesOf(instance);
    values.insert(values.end(), properties.begin(), properties.end());
    Row row;
    for (const NamedValue &named : values) {
        const size_t column = columnOf(table, named.name);
        row.resize(std::max(row.size(), column + 1));
        row[column] = cell(named.value);
    }
    table.rows.push_back(row);
}

std::vector<size_t> widthsOf(const Table &table) {
    std::vector<size_t> widths;
    for (const std::string &name : table.names) {
        widths.push_back(columns(name));
    }
    for (const Row &row : table.rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], columns(row[i]));
        }
    }
    return widths;
}

constexpr size_t gap = 2;

std::string asColumns(const Table &table, const std::vector<size_t> &widths) {
    std::string header;
    for (size_t i = 0; i < table.names.size(); ++i) {
        header += padded(table.names[i], widths[i] + gap);
    }
    std::string text = emphasized(withoutTrailingBlanks(header)) + "\n";
    for (const Row &row : table.rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += padded(row[i], widths[i] + gap);
        }
        text += withoutTrailingBlanks(line) + "\n";
    }
    return text;
}

std::string asBlocks(const Table &table) {
    size_t width = 0;
    for (const std::string &name : table.names) {
        width = std::max(width, columns(name));
    }
    std::string text;
    for (const Row &row : table.rows) {
        text += text.empty() ? "" : "\n";
        for (size_t i = 0; i < row.size(); ++i) {
            text += withoutTrailingBlanks(emphasized(padded(table.names[i], width + gap)) + row[i]) + "\n";
        }
    }
    return text;
}

std::string printed(const std::string &className, const Table &table) {
    const std::vector<size_t> widths = widthsOf(table);
    size_t total = 0;
    for (const size_t width : widths) {
        total += width + gap;
    }
    const std::string title = fmt::format("{} ({})", className, table.rows.size());
    return emphasized(title) + "\n" +
           (total <= outputWidth() + gap ? asColumns(table, widths) : asBlocks(table));
}

std::string instances(const std::vector<CMPIInstance *> &list) {
    std::vector<std::pair<std::string, Table>>
        tables; // one for each class, in order of their first instances
    for (const CMPIInstance *instance : list) {
        const std::string name = textOf(CMGetClassName(CMGetObjectPath(instance, nullptr), nullptr));
        auto found =
            std::find_if(tables.begin(), tables.end(), [&](const auto &one) { return one.first == name; });
        if (found == tables.end()) {
            found = tables.insert(tables.end(), {name, {}});
        }
        addInstance(found->second, instance);
    }
    std::string text;
    for (const auto &[name, table] : tables) {
        text += (text.empty() ? "" : "\n") + printed(name, table);
    }
    return text;
}

std::string paths(const std::vector<CMPIObjectPath *> &list) {
    std::string text;
    for (const CMPIObjectPath *path : list) {
        text += printable(broker::textOfPath(path, true)) + "\n";
    }
    return text;
}

std::string methodResult(const MethodResult &result) {
    Table table = {{"ReturnValue"}, {{cell(result.returnValue)}}};
    for (const NamedValue &named : argumentsOf(result.outParameters)) {
        table.names.push_back(named.name);
        table.rows.front().push_back(cell(named.value));
    }
    return asBlocks(table);
}

// A line for each feature: key mark, type, name, and the first line of what it is for.
std::string line(const char *mark, const broker::Feature &feature, const std::string &name) {
    const broker::Qualifier *description = broker::findQualifier(feature.qualifiers, "Description");
    const std::string text =
        description == nullptr || description->values.empty() ? "" : description->values.front();
    return withoutTrailingBlanks(fmt::format("  {:3} {:10} {:34} {}", mark, broker::textOfType(feature.type),
                                             name, printable(text))) +
           "\n";
}

std::string signature(const broker::Method &method) {
    std::vector<std::string> parameters;
    for (const broker::Parameter &parameter : method.parameters) {
        parameters.push_back(fmt::format("{}{} {}",
                                         parameter.isOut ? (parameter.isIn ? "inout " : "out ") : "",
                                         broker::textOfType(parameter.type), parameter.name));
    }
    return method.name + "(" + joined(parameters) + ")";
}

std::string classes(const std::vector<const broker::Class *> &list) {
    std::string text;
    for (const broker::Class *declared : list) {
        text += text.empty() ? "" : "\n";
        text += emphasized(declared->name);
        text += declared->superclass == nullptr ? "\n" : " : " + declared->superclass->name + "\n";
        for (const broker::Property &property : declared->properties) {
            text += line(property.isKey ? "key" : "", property, property.name);
        }
        for (const broker::Method &method : declared->methods) {
            text += line("", method, signature(method));
        }
    }
    return text;
}

std::string classNames(const std::vector<const broker::Class *> &list) {
    std::string text;
    for (const broker::Class *declared : list) {
        text += declared->name + "\n";
    }
    return text;
}

std::string counts(const std::vector<InstanceCount> &list) {
    std::string text;
    for (const InstanceCount &one : list) {
        text += fmt::format("{:>6}  {}\n", one.instances, one.countedClass->name);
    }
    return text;
}

} // namespace

const OutputFormat tableOutput = {"table", instances,  paths,  methodResult,
                                  classes, classNames, counts, overviewText};
