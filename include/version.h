// The version of this release, for version resources and for the texts that name the program.
#ifndef ROLLOUT_VERSION_H
#define ROLLOUT_VERSION_H

#define ROLLOUT_VERSION_NUMBERS 1, 0, 0, 0
#define ROLLOUT_VERSION_TEXT "1.0.0"

#endif
