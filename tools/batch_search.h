// What the fingerprint and trace commands share: the --seed option and the
// preparation that -makeTestData makes before its searches.
#pragma once

#include <cstdint>

// Finds "--seed N" (decimal, or hexadecimal with 0x) among the arguments,
// takes both words out and stores N in seed; seed keeps its value if the
// option is absent. False, with a message, on a missing or bad number.
bool takeSeedOption(int& argc, char** argv, uint64_t& seed);

// Finds a flag among the arguments and takes it out; true if it was there.
bool takeFlag(int& argc, char** argv, const char* flag);

// Finds "flag VALUE" among the arguments and takes both words out; the value,
// or null if the flag isn't there with a word after it.
const char* takeFlagValue(int& argc, char** argv, const char* flag);

// Keys from seed, then batch mode, the evaluation tables and the hash table
// at the Hash option's size, as the self-test modes prepare them.
void prepareBatchSearch(uint64_t seed);
