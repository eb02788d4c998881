// Class declarations in MOF.
#include "broker/mof.h"
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    broker::Schema schema;
    const std::string fault = broker::readMofText(textOf(data, size), "input", schema);
    require(fault.empty() || fault.starts_with("input:"), "a fault names the file", fault);
    for (const auto &cls : schema.classes) {
        require(broker::findClass(schema, cls->name) == cls.get(), "a declared class is found", cls->name);
        for (const std::size_t key : cls->keys) {
            require(key < cls->properties.size(), "a key is one of the properties", cls->name);
        }
        if (cls->superclass != nullptr) {
            require(cls->properties.size() >= cls->superclass->properties.size(), "properties are inherited",
                    cls->name);
        }
    }
    return 0;
}
