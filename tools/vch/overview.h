#pragma once

#include "output.h"
#include "session.h"
#include "terminal.h"

#include <span>
#include <string>
#include <vector>

/** What the overview takes from the command line. */
struct OverviewOptions {
    RequestOptions request;
    const OutputFormat *format = outputFormats[0];
};

/** A code of a property, and how well something is that has it. */
struct Grade {
    unsigned code;
    Health health;
};

/** A property in the overview. */
struct OverviewRow {
    const char *label;
    const char *property;
    /** Text for people, of a value that isn't NULL. */
    std::string (*show)(const broker::Property &declared, const CMPIData &value);
    std::span<const Grade> grades = {}; ///< colours of its codes
};

/** What the declaration says of a code; the code itself where it says nothing. */
std::string meaning(const broker::Property &declared, const CMPIData &value);

/** The grades of CIM's HealthState. */
inline constexpr Grade healthStates[] = {
    {5, Health::Good}, {10, Health::Warning}, {15, Health::Warning},
    {20, Health::Bad}, {25, Health::Bad},     {30, Health::Bad},
};

/** How well something is whose property has this value; Unknown for one without a grade. */
Health gradeOf(std::span<const Grade> grades, const CMPIData &value);

/** A class in the overview. */
struct OverviewSection {
    const char *name;  ///< for programs
    const char *title; ///< for people
    const char *className;
    bool isTable; ///< a line for each instance, instead of labels and values
    std::span<const OverviewRow> rows;
};

/** What a section's class answered. */
struct OverviewAnswer {
    const OverviewSection *section;
    const broker::Class *cls = nullptr; ///< null where it isn't declared
    std::vector<CMPIInstance *> instances = {};
    std::string error = {}; ///< why there are no instances; empty when the class answered
};

/**
 * Prints the server, its power supplies and its power settings, as their classes tell them. A class that
 * fails doesn't keep the others from being printed; a Failure then says how many did.
 */
void printOverview(const OverviewOptions &options);

/** The overview for people: labels and values, coloured by health on a terminal. */
std::string overviewText(const std::vector<OverviewAnswer> &answers);
