#include "support/fixture.h"

#include "support/folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// The stores of a test program lie in memory, in a folder that goes with it, also when it can't be filled.
struct Stores {
    const Folder folder;
    const fs::path sample = folder / "sample.db";
    const fs::path trace = folder / "trace";
    int number = 0;

    Stores() {
        sp::create_store(sample);
        // Before the library writes its first trace line, which is when the diagnostic library looks.
        setenv("VCH_TRACE", trace.c_str(), 1);
        sp::use_store(sample);
        sp::sql("UPDATE configuration_variable SET value = 256 + 512 WHERE id = " +
                std::to_string(sp::trace_mask_variable));
        sp::sql("UPDATE simulation SET Walk = 0, StoppedAt = 1780000000"); // readings and clock stand still
        sp::sql("PRAGMA wal_checkpoint(TRUNCATE)"); // copies of the file alone must be whole
        std::ofstream{trace};
    }
    fs::path newStore() { return folder / ("store" + std::to_string(++number) + ".db"); }
};

Stores &stores() {
    static Stores stores;
    return stores;
}

broker::PropertyList listOf(PropertyNames &properties) {
    if (!properties) {
        return nullptr;
    }
    properties->push_back(nullptr);
    return properties->data();
}

constexpr char class_prefix[] = "TRV_oVTA";

std::string withPrefix(const std::string &name) {
    return class_prefix + name;
}

} // namespace

broker::Broker &theBroker() {
    static const broker::BrokerPointer broker = [] {
        broker::Settings settings;
        settings.providerModule = PROVIDER_MODULE;
        settings.mofFiles = {SCHEMA_FOLDER "/CIM_base.mof", SCHEMA_FOLDER "/TRV_oVTA.mof", HOOKED_MOF};
        settings.providedClasses = {"TRV_*"};
        std::string error;
        broker::BrokerPointer opened = broker::openBroker(settings, error);
        if (opened == nullptr) {
            ADD_FAILURE() << error;
            std::abort();
        }
        return opened;
    }();
    return *broker;
}

broker::Client theClient() {
    broker::Client client;
    client.principal = "admin";
    client.remoteAddress = "192.0.2.7";
    return client;
}

std::vector<std::string> allClasses() {
    std::vector<std::string> names;
    for (const broker::Class *cls : broker::findClasses(broker::schemaOf(theBroker()), withPrefix("*"))) {
        if (!cls->isAbstract) {
            names.push_back(cls->name.substr(sizeof class_prefix - 1));
        }
    }
    return names;
}

// --- Reply

std::string Reply::value(std::size_t instance, const char *property) const {
    CMPIStatus st{};
    const CMPIData data = CMGetProperty(answer.instances.at(instance), property, &st);
    return st.rc == CMPI_RC_OK ? broker::textOfValue(data) : "(unset)";
}

std::vector<std::string> Reply::propertyNames(std::size_t instance) const {
    std::vector<std::string> names;
    const CMPIInstance *inst = answer.instances.at(instance);
    for (CMPICount i = 0; i < CMGetPropertyCount(inst, nullptr); ++i) {
        CMPIString *name = nullptr;
        CMGetPropertyAt(inst, i, &name, nullptr);
        names.push_back(CMGetCharsPtr(name, nullptr));
    }
    return names;
}

int Reply::find(const char *property, const std::string &text) const {
    for (std::size_t i = 0; i < answer.instances.size(); ++i) {
        if (value(i, property) == text) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

// --- Fixture

// A store of its own for each test: connections to the one before may still be open in other threads.
ServiceProcessorTest::ServiceProcessorTest() : store(stores().newStore()) {
    fs::copy_file(stores().sample, store);
    sp::use_store(store);
    sp::clear_faults();
    wraps::reset();
    fs::resize_file(stores().trace, 0);
    sp::start_journal();
    theBroker();
}

ServiceProcessorTest::~ServiceProcessorTest() {
    sp::stop_journal();
    EXPECT_EQ(sp::open_handles(sp::Handle::OemDb), 0);
    EXPECT_EQ(sp::open_handles(sp::Handle::CoreDb), 0);
    EXPECT_EQ(sp::open_handles(sp::Handle::Session), 0);
    EXPECT_EQ(broker::liveClones(theBroker()), 0U);
    for (const char *beside : {"", "-wal", "-shm"}) {
        fs::remove(store + beside);
    }
}

broker::RequestPointer ServiceProcessorTest::request() {
    return broker::beginRequest(theBroker(), theClient());
}

const CMPIBroker *ServiceProcessorTest::cmpi() {
    return broker::cmpiBroker(theBroker());
}

CMPIObjectPath *ServiceProcessorTest::path(broker::Request &request, const std::string &text) {
    std::string error;
    CMPIObjectPath *path = broker::parsePath(request, withPrefix(text), error);
    EXPECT_NE(path, nullptr) << error;
    return path;
}

Reply ServiceProcessorTest::enumerate(const std::string &className, PropertyNames properties) {
    Reply reply{request(), {}};
    reply.answer =
        broker::enumerateInstances(*reply.request, path(*reply.request, className), listOf(properties));
    return reply;
}

Reply ServiceProcessorTest::names(const std::string &className) {
    Reply reply{request(), {}};
    reply.answer = broker::enumerateInstanceNames(*reply.request, path(*reply.request, className));
    return reply;
}

Reply ServiceProcessorTest::get(const std::string &pathText, PropertyNames properties) {
    Reply reply{request(), {}};
    reply.answer = broker::getInstance(*reply.request, path(*reply.request, pathText), listOf(properties));
    return reply;
}

namespace {

// A value of a declared type; a null one where the text is "NULL".
CMPIData valueOf(broker::Request &request, const broker::Feature *declared,
                 const std::vector<std::string> &texts) {
    CMPIData value = {declared == nullptr ? CMPI_string : declared->type, CMPI_nullValue, {}};
    std::string error;
    EXPECT_NE(declared, nullptr);
    EXPECT_TRUE(texts.at(0) == "NULL" || broker::parseValue(request, value.type, texts, value, error))
        << error;
    return value;
}

const broker::Class &classOf(broker::Request &request, const CMPIObjectPath *path) {
    const char *name = CMGetCharsPtr(CMGetClassName(path, nullptr), nullptr);
    return *broker::findClass(broker::schemaOf(broker::brokerOf(request)), name);
}

} // namespace

Reply ServiceProcessorTest::modify(const std::string &pathText, const Values &values,
                                   PropertyNames properties) {
    Reply reply{request(), {}};
    const CMPIObjectPath *cop = path(*reply.request, pathText);
    CMPIInstance *inst = CMNewInstance(cmpi(), cop, nullptr);
    for (const auto &[name, texts] : values) {
        const broker::Property *declared = broker::findProperty(classOf(*reply.request, cop), name);
        broker::setProperty(inst, name, valueOf(*reply.request, declared, texts));
    }
    reply.answer = broker::modifyInstance(*reply.request, cop, inst, listOf(properties));
    return reply;
}

Reply ServiceProcessorTest::invoke(const std::string &pathText, const char *method, const Values &arguments) {
    Reply reply{request(), {}};
    const CMPIObjectPath *cop = path(*reply.request, pathText);
    CMPIArgs *in = CMNewArgs(cmpi(), nullptr);
    const broker::Method *declared = broker::findMethod(classOf(*reply.request, cop), method);
    for (const auto &[name, texts] : arguments) {
        const broker::Parameter *parameter =
            declared == nullptr ? nullptr : broker::findParameter(*declared, name);
        broker::addArgument(in, name, valueOf(*reply.request, parameter, texts));
    }
    reply.answer = broker::invokeMethod(*reply.request, cop, method, in, CMNewArgs(cmpi(), nullptr));
    return reply;
}

std::string ServiceProcessorTest::trace() {
    std::stringstream text;
    text << std::ifstream(stores().trace).rdbuf();
    return text.str();
}

testing::AssertionResult ServiceProcessorTest::traced(const std::string &text) {
    const std::string all = trace();
    return all.find(text) == std::string::npos ? testing::AssertionFailure() << "the trace has only:\n"
                                                                             << all
                                               : testing::AssertionSuccess();
}

void ServiceProcessorTest::setVariable(int id, const std::string &value, int index) {
    sp::sql("UPDATE configuration_variable SET value = " + value + " WHERE id = " + std::to_string(id) +
            " AND list_index = " + std::to_string(index));
}

std::string ServiceProcessorTest::variable(int id, int index) {
    return sp::sql("SELECT value FROM configuration_variable WHERE id = " + std::to_string(id) +
                   " AND list_index = " + std::to_string(index))
        .at(0)
        .at(0);
}

// --- CapturingResult

namespace {

constexpr CMPIStatus ok = {CMPI_RC_OK, nullptr};

CapturingResult &capturing(const CMPIResult *result) {
    return *static_cast<CapturingResult *>(const_cast<void *>(result->hdl));
}

CMPIStatus captureValue(const CMPIResult *result, const CMPIValue *value, CMPIType) {
    capturing(result).value = value->uint32;
    return ok;
}

CMPIStatus captureDone(const CMPIResult *result) {
    capturing(result).done = true;
    return ok;
}

template <typename Object> CMPIStatus captureObject(const CMPIResult *result, const Object *) {
    ++capturing(result).returned;
    return ok;
}

const CMPIResultFT capturing_table = {
    200,
    [](CMPIResult *) { return ok; },
    [](const CMPIResult *, CMPIStatus *) -> CMPIResult * { return nullptr; },
    captureValue,
    captureObject<CMPIInstance>,
    captureObject<CMPIObjectPath>,
    captureDone,
    [](const CMPIResult *, const CMPIError *) {
        return CMPIStatus{CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    },
};

} // namespace

CapturingResult::CapturingResult() : result{this, &capturing_table} {}

std::string textOf(const CMPIStatus &status) {
    const char *message = status.msg == nullptr ? nullptr : CMGetCharsPtr(status.msg, nullptr);
    return std::to_string(status.rc) + (message == nullptr ? "" : std::string(" ") + message);
}

std::string textOf(const broker::Answer &answer) {
    return std::to_string(answer.rc) + (answer.message.empty() ? "" : ' ' + answer.message);
}

void expectShown(const Reply &reply, std::size_t instance,
                 const std::vector<std::pair<const char *, std::string>> &values) {
    ASSERT_LT(instance, reply.answer.instances.size()) << reply.answer.message;
    std::vector<std::string> order;
    for (const auto &[name, text] : values) {
        EXPECT_EQ(reply.value(instance, name), text) << name;
        order.push_back(name);
    }
    EXPECT_EQ(reply.propertyNames(instance), order);
}

std::string answerOf(MethodOperation *operation, broker::Request &request, const CMPIObjectPath *path,
                     const char *method) {
    const CMPIBroker *cmpi = broker::cmpiBroker(theBroker());
    CMPIArgs *none = CMNewArgs(cmpi, nullptr);
    CapturingResult returned;
    const CMPIStatus status =
        operation(cmpi, nullptr, broker::contextOf(request), path, method, none, &returned.result, none);
    EXPECT_TRUE(returned.done);
    return std::to_string(returned.value) + ", " + textOf(status);
}
