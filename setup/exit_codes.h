// What Setup.exe ends with. The installer's codes keep their meaning; the program's own lie outside 1600 to 1700.
#pragma once

enum SetupExitCode : unsigned int
{
    SETUP_DONE = 0,         // the deployment stands, or the check found nothing
    SETUP_CANCELLED = 1602, // the user or the answers file cancelled; nothing was changed
    SETUP_FAILED = 1603,    // the cause stands in the last line of output and in the log

    SETUP_BAD_COMMAND_LINE = 20,
    SETUP_BAD_ANSWERS =
        21, // the answers file or a --set: unreadable, not the grammar, an unknown word, a bad value
    SETUP_ANSWER_REFUSED = 22,   // a page refused its answers and stayed
    SETUP_UNANSWERED_BOX = 23,   // a box came up for which there is no answer
    SETUP_PAGE_NOT_REACHED = 24, // there are answers for a page that isn't shown
    SETUP_PAGE_OVERDUE = 25,     // a page didn't come, or didn't go, in time
    SETUP_BROKE_OFF = 26,        // the run crashed, or was ended before it could say how
    SETUP_NO_SIGN_OF_LIFE = 27,  // nothing got done for the quiet limit, so the run was ended

    SETUP_DEPLOYMENT_DIFFERS = 28, // something is not as it was built, or two deployments are not equal
    SETUP_UNDETERMINED = 29,       // no deployment, or what was read doesn't suffice for a verdict
};
