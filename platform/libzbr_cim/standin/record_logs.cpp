#include <algorithm>
#include <cstring>

#include "ipmi.h"
#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

namespace {

/// Stores the low bytes of a number, the lowest first.
template <size_t N> void store(uint8_t (&place)[N], int64_t number) {
    for (size_t i = 0; i < N; ++i) {
        place[i] = static_cast<uint8_t>(number >> (8 * i));
    }
}

/// What ends a text, and a list of texts.
constexpr size_t text_end = 1, list_end = 2;

/// Hands over the text that a query gives, cut to the caller's buffer and always with its end.
int give_text(IpmiSession *session, std::string_view query_text, std::initializer_list<Value> values,
              size_t end, char *buffer, uint16_t *length) {
    if (!is_open(session) || buffer == nullptr || length == nullptr || *length < end) {
        return NoAnswer;
    }
    Query query(query_text, values);
    if (!query.next()) {
        return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
    }
    const std::string_view text = query.text(0).substr(0, *length - end);
    fill_text(buffer, text.size() + end, text);
    *length = static_cast<uint16_t>(text.size());
    return 0;
}

/// The text of each kind; the store has lists as lines.
constexpr struct {
    int kind;
    size_t end;
    const char *query;
} text_kinds[] = {
    {SelTextCauses, list_end,
     "SELECT replace(Causes, char(10), char(0)) FROM sel_text WHERE ErrorCode = ? AND Language = ?"},
    {SelTextResolutions, list_end,
     "SELECT replace(Resolutions, char(10), char(0)) FROM sel_text WHERE ErrorCode = ? AND Language = ?"},
    {SelTextSummary, text_end, "SELECT Summary FROM sel_text WHERE ErrorCode = ? AND Language = ?"},
};

} // namespace

int ZBR_CIM_GetIELInfo(IpmiSession *session, IelInfo *info, int) {
    return call("ZBR_CIM_GetIELInfo", {}, [&] {
        if (!is_open(session) || info == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT Capacity, LastErase, min((SELECT count(*) FROM iel), 65535), "
                    "EXISTS (SELECT 1 FROM configuration_variable WHERE id = 0x0009 AND value != 0) "
                    "FROM iel_state");
        if (!query.next()) {
            return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
        }
        constexpr uint8_t never_overwrites = 0x80;
        *info = {};
        store(info->MaximumEntries, query.number(0));
        store(info->LastErase, query.number(1));
        store(info->Entries, query.number(2));
        info->Flags = query.number(3) != 0 ? never_overwrites : 0;
        return 0;
    });
}

int ZBR_CIM_GET_SEL_ALLOCATION_INFO(IpmiSession *session, uint16_t *units, uint16_t *unitSize,
                                    uint16_t *freeUnits, uint16_t *largestFree, uint8_t *largestRecord, int) {
    return call("ZBR_CIM_GET_SEL_ALLOCATION_INFO", {}, [&] {
        if (!is_open(session)) {
            return NoAnswer;
        }
        const ResponseData answer = execute_ipmi(storage_net_function, get_sel_allocation_info_command, {});
        if (answer.front() != IpmiOk) {
            return CompletionCode + answer.front();
        }
        size_t at = 1;
        for (uint16_t *number : {units, unitSize, freeUnits, largestFree}) {
            if (number != nullptr) {
                *number = static_cast<uint16_t>(answer[at] | answer[at + 1] << 8);
            }
            at += sizeof *number;
        }
        if (largestRecord != nullptr) {
            *largestRecord = answer[at];
        }
        return 0;
    });
}

int ZBR_CIM_GetSupportedLanguages(IpmiSession *session, uint8_t *count, uint16_t *languages, int) {
    return call("ZBR_CIM_GetSupportedLanguages", {}, [&] {
        if (!is_open(session) || count == nullptr || languages == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT Language FROM supported_language ORDER BY position");
        *count = 0;
        while (*count < SUPPORTED_LANGUAGES_SIZE && query.next()) {
            languages[(*count)++] = static_cast<uint16_t>(query.number(0));
        }
        return query.failed ? CompletionCode + IpmiUnspecifiedError : 0;
    });
}

int ZBR_CIM_InterpretSELEntryAsText(IpmiSession *session, uint16_t recordId, uint16_t language, int,
                                    char *buffer, uint16_t *length, int) {
    return call("ZBR_CIM_InterpretSELEntryAsText", {recordId, language}, [&] {
        return give_text(session,
                         "SELECT replace(Message, '%s', Device) FROM sel JOIN sel_text USING (ErrorCode) "
                         "WHERE RecordId & 0xFFFF = ? AND Language = ?",
                         {recordId, language}, text_end, buffer, length);
    });
}

int ZBR_CIM_GetSELTextFromErrCode(IpmiSession *session, uint32_t errorCode, int kind, uint16_t language, int,
                                  char *buffer, uint16_t *length, int) {
    return call("ZBR_CIM_GetSELTextFromErrCode", {Hex{errorCode}, kind, language}, [&] {
        const auto *known =
            std::ranges::find_if(text_kinds, [=](const auto &row) { return row.kind == kind; });
        return known == std::end(text_kinds)
                   ? CompletionCode + IpmiInvalidDataField
                   : give_text(session, known->query, {static_cast<int64_t>(errorCode), language}, known->end,
                               buffer, length);
    });
}
