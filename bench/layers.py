"""What each layer of a program spends of its instructions, from a callgrind file."""

import collections
import re

# A function's layer is that of its object; the broker is a part of the program itself.
LAYERS = (
    ("broker", lambda ob, fn: "/bin/" in ob and fn.startswith(("broker::", "(anonymous namespace)::broker"))),
    ("tool", lambda ob, fn: "/bin/" in ob),
    ("provider module", lambda ob, fn: "libTRVProviders" in ob),
    ("class library", lambda ob, fn: "libVendorClassHelper" in ob),
    ("stand-ins", lambda ob, fn: "/build/" in ob),
    ("store (SQLite)", lambda ob, fn: "libsqlite3" in ob),
)
START = "start, loading, C library"


def layer_of(function):
    for name, holds in LAYERS:
        if holds(*function):
            return name
    return None


def read(path):
    """The cost of each function itself, and of each call from one to another with all that it brings."""
    names = {"ob": {}, "fn": {}}
    own = collections.Counter()
    calls = collections.Counter()
    current = {"ob": "", "fn": ""}
    callee = {"ob": "", "fn": ""}
    is_call = False
    with open(path) as file:
        for line in file:
            match = re.match(r"(c?)(ob|fn)=\((\d+)\)(?: (.*))?$", line)
            if match:
                kind = names[match[2]]
                if match[4]:
                    kind[match[3]] = match[4]
                (callee if match[1] else current)[match[2]] = kind[match[3]]
                if match[2] == "ob" and not match[1]:
                    callee["ob"] = current["ob"]
            elif line.startswith("fn="):
                raise ValueError(line)
            elif line.startswith("calls="):
                is_call = True
            elif re.match(r"[+\-*\d]", line):
                cost = int(line.split()[1])
                function = (current["ob"], current["fn"])
                if is_call:
                    calls[function, (callee["ob"], callee["fn"])] += cost
                    callee["ob"] = current["ob"]
                else:
                    own[function] += cost
                is_call = False
    return own, calls


def shares(path):
    """Instructions of each layer. What a layer has done by the C library counts for the layer, unless that calls
    another one back."""
    own, calls = read(path)
    # Functions of no layer that lead to one: they start programs and load libraries.
    leading = set()
    callers = collections.defaultdict(set)
    for caller, callee in calls:
        callers[callee].add(caller)
    reached = [function for function in set(own) | set(callers) if layer_of(function)]
    while reached:
        for caller in callers[reached.pop()]:
            if layer_of(caller) is None and caller not in leading:
                leading.add(caller)
                reached.append(caller)
    costs = collections.Counter()
    for function, cost in own.items():
        if layer_of(function):
            costs[layer_of(function)] += cost
    for (caller, callee), cost in calls.items():
        if layer_of(caller) and layer_of(callee) is None and callee not in leading:
            costs[layer_of(caller)] += cost
    total = sum(own.values())
    costs[START] = total - sum(costs.values())
    return total, [(name, costs[name]) for name, _ in LAYERS] + [(START, costs[START])]
