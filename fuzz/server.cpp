#include "server.h"

#include "platform/sp/sp.h"
#include "target.h"
#include "tests/support/folder.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

// Gone with the process, unless that is stopped by a finding.
struct Stores {
    const Folder folder;
    const fs::path sample = folder / "sample.db";
    Stores() {
        sp::create_store(sample);
        sp::use_store(sample);
        sp::sql("PRAGMA wal_checkpoint(TRUNCATE)"); // copies of the file alone must be whole
    }
};

} // namespace

broker::Broker &theBroker() {
    static const broker::BrokerPointer broker = [] {
        broker::Settings settings;
        settings.providerModule = PROVIDER_MODULE;
        settings.mofFiles = {SCHEMA_FOLDER "/CIM_base.mof", SCHEMA_FOLDER "/TRV_oVTA.mof"};
        settings.providedClasses = {"TRV_*"};
        settings.classPrefix = "TRV_oVTA";
        std::string error;
        broker::BrokerPointer opened = broker::openBroker(settings, error);
        require(opened != nullptr, "no broker", error);
        return opened;
    }();
    return *broker;
}

broker::RequestPointer beginRequest() {
    broker::Client client;
    client.principal = "admin";
    client.remoteAddress = "192.0.2.7";
    return broker::beginRequest(theBroker(), client);
}

// A store of another name each time, as connections to the one before are open until the next call.
void restoreServer() {
    static const Stores stores;
    static fs::path store;
    static unsigned number = 0;
    for (const char *beside : {"", "-wal", "-shm"}) {
        if (!store.empty()) {
            fs::remove(store.string() + beside);
        }
    }
    store = stores.folder / (std::to_string(++number) + ".db");
    fs::copy_file(stores.sample, store);
    sp::use_store(store);
}

void requireNothingLeft() {
    require(sp::open_handles(sp::Handle::OemDb) == 0, "a handle of the OEM DB is open");
    require(sp::open_handles(sp::Handle::CoreDb) == 0, "a handle of the Core DB is open");
    require(sp::open_handles(sp::Handle::Session) == 0, "a session is open");
    require(broker::liveClones(theBroker()) == 0, "clones weren't released");
}
