#include <cstdlib>
#include <cstring>
#include <optional>

#include "libzbr_LCM.h"
#include "standin.h"

using namespace sp;

namespace {

/// A copy with an end behind it.
char *copy(const char *bytes, size_t size) {
    auto *block = static_cast<char *>(malloc(size + 1));
    if (block != nullptr) {
        memcpy(block, bytes, size);
        block[size] = '\0';
    }
    return block;
}

/// A copy of a column's value; NULL for NULL.
char *copy_value(const Query &query, int column) {
    if (query.holds_number(column)) {
        char bytes[sizeof(int64_t)];
        for (size_t i = 0; i < sizeof bytes; ++i) {
            bytes[i] = static_cast<char>(query.number(column) >> (8 * i));
        }
        return copy(bytes, sizeof bytes);
    }
    const std::string_view text = query.text(column);
    return text.data() != nullptr ? copy(text.data(), text.size()) : nullptr;
}

/// The table of one parameter, or NULL.
LCMParameterEntry *read_parameter(const char *group, const char *name) {
    Query query("SELECT Status, Value FROM agent_parameter WHERE ParameterGroup = ? AND Name = ?",
                {group, name});
    if (!agent_connected() || !query.next()) {
        return nullptr;
    }
    auto *entry = static_cast<LCMParameterEntry *>(calloc(1, sizeof(LCMParameterEntry)));
    if (entry != nullptr) {
        entry->Status = static_cast<uint32_t>(query.number(0));
        entry->Value = copy_value(query, 1);
    }
    return entry;
}

} // namespace

int OpenMTLIConnection(void) {
    return call("OpenMTLIConnection", {}, [] { return agent_connected() ? 0 : -1; });
}

LCMParameterEntry *LCMParam_update(int, const char *group, const char *name, int, int *entries) {
    LCMParameterEntry *table = nullptr;
    if (entries == nullptr) {
        return table;
    }
    *entries = 0;
    call("LCMParam_update", {group, name}, [&] {
        if (group == nullptr || name == nullptr) {
            return;
        }
        const std::optional<int> claimed = claimed_count();
        table = claimed > 0 ? nullptr : read_parameter(group, name);
        *entries = claimed.value_or(table != nullptr);
    });
    return table;
}

void LCMParamDb_destroyParameterTable(LCMParameterEntry **table, int) {
    const auto destroy = [&] {
        if (table != nullptr && *table != nullptr) {
            free((*table)->Value);
            free(*table);
            *table = nullptr;
        }
        return 0;
    };
    call("LCMParamDb_destroyParameterTable", {}, destroy, [&](int) { return destroy(); });
}
