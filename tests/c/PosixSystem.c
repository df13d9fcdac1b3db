/* The system under the client, by the C library and POSIX threads. */
#include <pthread.h>
#include <stdio.h>

#include "MsvcClient.h"

void say(const char* text) {
    fputs(text, stdout);
}

void say_hex(uint32_t value) {
    printf("%08x", (unsigned)value);
}

struct start {
    void (*body)(void*);
    void* user;
};

static void* run_start(void* user) {
    const struct start* const start = user;
    start->body(start->user);
    return NULL;
}

void run_threads(void (*body)(void*), void** users, int count) {
    struct start starts[16];
    pthread_t threads[16];
    int i;
    for (i = 0; i < count; ++i) {
        starts[i].body = body;
        starts[i].user = users[i];
        if (pthread_create(&threads[i], NULL, run_start, &starts[i]) != 0)
            say("a thread did not start\n");
    }
    for (i = 0; i < count; ++i) pthread_join(threads[i], NULL);
}

int main(void) {
    run_client("client.3mf");
    return 0;
}
