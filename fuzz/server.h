// The sample server in memory and a broker with the class library, for targets that ask it.
#pragma once

#include "broker/broker.h"

// Opened at the first call, for the rest of the process.
broker::Broker &theBroker();

// A request as from a client that logged in.
broker::RequestPointer beginRequest();

// The sample server as it was at first; what inputs before this one changed is gone.
void restoreServer();

// Ends the process when something is still open, or when clones live on.
void requireNothingLeft();
