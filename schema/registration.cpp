// How CIM servers learn which classes the provider module serves.
#include "parts.h"

namespace generator {

namespace {

// The provider module's file name is lib<module>.so; its factories have the same name as their prefix.
constexpr char module_name[] = "TRVProviders";

// A text property of an instance.
std::string textOf(const char *name, const char *value) {
    return std::string("    ") + name + " = \"" + value + "\";\n";
}

} // namespace

std::string sfcbRegistration(const Classes &classes) {
    std::string text;
    for (const ClassTable *table : classes) {
        text += std::string(text.empty() ? "" : "\n") + '[' + table->className + "]\n";
        text += std::string("   provider: ") + module_name + '\n';
        text += std::string("   location: ") + module_name + '\n';
        text += std::string("   type: instance") + (table->methods.empty() ? "" : " method") + '\n';
        text += std::string("   namespace: ") + name_space + '\n';
    }
    return text;
}

std::string pegasusRegistration(const Classes &classes) {
    std::string text = std::string("// Generated from the tables of the classes in src/; don't edit.\n"
                                   "//\n"
                                   "// The classes come first, in their own namespace:\n"
                                   "//   cimmof -n ") +
                       name_space +
                       " schema/TRV_oVTA.mof\n"
                       "//   cimmof -n root/PG_InterOp schema/pegasus/TRVProviders.mof\n";
    text += "\ninstance of PG_ProviderModule {\n";
    text += textOf("Name", module_name);
    text += textOf("Vendor", "MARLOVEN");
    text += textOf("Version", VCH_VERSION);
    text += textOf("InterfaceType", "CMPI");
    text += textOf("InterfaceVersion", "2.0.0");
    text += textOf("Location", module_name);
    text += "};\n\ninstance of PG_Provider {\n";
    text += textOf("ProviderModuleName", module_name);
    text += textOf("Name", module_name);
    text += "};\n";
    for (const ClassTable *table : classes) {
        const bool hasMethods = !table->methods.empty();
        text += "\ninstance of PG_ProviderCapabilities {\n";
        text += textOf("ProviderModuleName", module_name);
        text += textOf("ProviderName", module_name);
        text += textOf("CapabilityID", table->className);
        text += textOf("ClassName", table->className);
        text += std::string("    Namespaces = {\"") + name_space + "\"};\n";
        text += hasMethods ? "    ProviderType = {2, 5}; // instance, method\n"
                           : "    ProviderType = {2}; // instance\n";
        text += "};\n";
    }
    return text;
}

} // namespace generator
