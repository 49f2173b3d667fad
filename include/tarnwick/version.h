#ifndef TARNWICK_VERSION_H
#define TARNWICK_VERSION_H

/*
 * The version that these headers belong to, by semantic versioning: a greater TARNWICK_VERSION_MAJOR means that
 * hosts have something to change. It holds macros alone, so that resource scripts can include it.
 *
 * The build refuses numbers that differ from its own.
 */
#define TARNWICK_VERSION_MAJOR 0
#define TARNWICK_VERSION_MINOR 1
#define TARNWICK_VERSION_PATCH 0
#define TARNWICK_VERSION "0.1.0"

#endif
