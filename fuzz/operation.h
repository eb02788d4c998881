// A client's request as text, so that people can read and write the corpus.
#pragma once

#include "broker/broker.h"

#include <string_view>

// Line by line:
//     gi | ein | ei | mi | im METHOD     get, names, enumerate, modify, invoke; any other word is the first
//     [NAMESPACE:]CLASS
//     k TYPE NAME=VALUE                  a key of the path
//     v TYPE NAME=VALUE                  a property of the new instance, or an argument
//     p NAME                             a name of the property list
// Types are those of MOF, with [] for arrays, whose elements are separated by "|". A value that can't be read
// is a null of its type; a type that isn't known makes a string. Lines of other kinds are left out.
//
// Runs the request. False where the text names no declared class. Ends the process when the answer isn't one
// that a client may get, or when the request leaves something open.
bool run(std::string_view text);

// Whether a text asks for a change.
bool asksForChange(std::string_view text);
