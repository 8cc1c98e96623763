#pragma once

/* The yardstick: the installed Subversion called directly, by a client that only counts what it is told. */

#ifdef __cplusplus
extern "C" {
#endif

/* A pool and a client context with the user's configuration. */
struct PlainClient;

/* Starts Subversion and makes a client; NULL after a message on standard error. */
struct PlainClient* PlainClientOpen(void);

/* Runs the named operation on a local path or URL.
 * Returns how many items (for "cat": bytes) were reported, or -1 after a message on standard error. */
long PlainClientRun(struct PlainClient* client, const char* operation, const char* target);

/* Ends the client; NULL is allowed. */
void PlainClientClose(struct PlainClient* client);

#ifdef __cplusplus
}
#endif
