// Tables with a row that has no description: TABLE says which of them is used. None compiles.
#include "Utilities/ClassFrame.h"

struct ToyRecord {
    char InstanceID[8];
    std::uint16_t Size;
};
using R = ToyRecord;

constexpr Key<R> keys[] = {{"Undescribed_keys", FIELD(R, InstanceID), nullptr}};

constexpr Property<R> properties[] = {
    {"Described", CMPI_uint16, FIELD(R, Size), "Size in mm."},
    {"Undescribed_properties", CMPI_uint16, FIELD(R, Size), ""},
};

constexpr MethodParameter parameters[] = {{"Undescribed_methods", CMPI_uint16, ""}};
constexpr Method methods[] = {{"Grow", nullptr, "Makes it larger.", parameters}};

const auto columns = Untagged<TABLE>;
