#include "sample_server.h"

#include <cstdlib>
#include <filesystem>

Folder::Folder() : path("/dev/shm/vch-platform-XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("no folder in /dev/shm");
    }
}

Folder::~Folder() {
    std::filesystem::remove_all(path);
}

SampleServer::SampleServer() {
    static const Folder template_folder;
    static const std::string template_store = [] {
        sp::create_store(template_folder / "sample.db");
        sp::use_store(template_folder / "sample.db");
        sp::sql("UPDATE simulation SET Walk = 0");
        sp::sql("PRAGMA wal_checkpoint(TRUNCATE)"); // copies of the file alone have to be whole
        return template_folder / "sample.db";
    }();
    std::filesystem::copy_file(template_store, store);
    sp::use_store(store);
    sp::clear_faults();
    sp::start_journal();
}

SampleServer::~SampleServer() {
    sp::stop_journal();
    sp::clear_faults();
    for (const sp::Handle kind : {sp::Handle::CoreDb, sp::Handle::OemDb, sp::Handle::Session}) {
        EXPECT_EQ(sp::open_handles(kind), 0) << "the test left a handle open";
    }
}

int SampleServer::log_in(IpmiSession *session, const char *password, uint8_t privilegeLevel) {
    uint8_t confidentiality = 1;
    return CIM_Create_IPMI20_Session(session, "127.0.0.1", 623, "cimprovider", password, 6, 0, 0,
                                     &confidentiality, privilegeLevel, 1, 1, 0, 0, 30);
}
