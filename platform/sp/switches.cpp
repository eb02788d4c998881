#include <stdexcept>

#include "sp.h"
#include "standin.h"

namespace sp {

void plug_power_supply(int slot, bool plugged) {
    const std::string where = " WHERE Slot = " + std::to_string(slot);
    if (sql("SELECT 1 FROM power_supply_slot" + where).empty()) {
        throw std::runtime_error("no slot for power supplies has the number " + std::to_string(slot) +
                                 ": there are " +
                                 sql("SELECT group_concat(Slot, ', ') FROM power_supply_slot").at(0).at(0));
    }
    sql("UPDATE power_supply_slot SET Present = " + std::to_string(plugged) + where);
}

void make_blade(bool blade) {
    sql("UPDATE service_processor SET Blade = " + std::to_string(blade));
}

void connect_agent(bool connected) {
    sql("UPDATE service_processor SET AgentConnected = " + std::to_string(connected));
}

bool agent_connected() {
    Query query("SELECT 1 FROM service_processor WHERE AgentConnected");
    return query.next();
}

} // namespace sp
