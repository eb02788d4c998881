// The calls of the class library that the tests stand in for: memory, the dynamic loader and sleep.
//
// The library under test is made of the same objects as the real one, linked so that these calls come here.
// Without orders they do what they always do, except that nobody sleeps.
#pragma once

namespace wraps {

enum Call { Allocation, Open, Symbol, call_kinds };

// Lets the n-th call of that kind from now on fail, counted from 1. 0 lets none fail.
void fail(Call kind, int nth);

// Forgets all orders and counts.
void reset();

// How many calls of that kind there were since the last reset.
int calls(Call kind);

// What the library holds of what it took since the last reset: blocks that it allocated and hasn't freed, and
// libraries that it opened and hasn't closed.
int liveBlocks();
int openLibraries();

// How many blocks of others, rows of the back ends, it freed since the last reset.
int foreignBlocksFreed();

// What sleep was called for since the last reset.
int sleeps();
int secondsSlept();

} // namespace wraps
