#pragma once

#include <functional>

/// Does the same again and again and has valgrind, where it runs the program, look at the memory twice: after a few
/// rounds, when whatever is made once has been made, and after many more, when no other thread runs. What the second
/// look finds more than the first goes into valgrind's log; check-memory-rounds reads it there. Each round has an
/// autorelease pool of its own. The many are as many as EPG_MEMORY_ROUNDS says, or 200. Gives the number of all
/// the rounds; a round with a fatal failure is the last.
int repeatForMemory(const std::function<void()>& round);
