/* bench_measure REPORT COMMAND [ARGUMENT...]: runs a command and writes what the system counted for it to the file
 * REPORT. A launcher of its own because a process's peak memory starts with that of the process that forked it, and
 * a script's interpreter is larger than some of the programs measured. */

#include <stdio.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double seconds(struct timeval time) { return (double)time.tv_sec + (double)time.tv_usec / 1e6; }

static double now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec + (double)time.tv_nsec / 1e9;
}

static int writeReport(const char* path, double elapsed, const struct rusage* usage)
{
    FILE* file = fopen(path, "w");
    if (!file) {
        perror(path);
        return -1;
    }
    fprintf(file, "elapsed %.6f\ncpu %.6f\npeak %ld\n", elapsed, seconds(usage->ru_utime) + seconds(usage->ru_stime),
            usage->ru_maxrss * 1024);
    return fclose(file);
}

int main(int argc, char** argv)
{
    if (argc < 3) {
        fputs("usage: bench_measure REPORT COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    const double started = now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[2], argv + 2);
        perror(argv[2]);
        _exit(127);
    }
    int status = 0;
    struct rusage usage;
    if (child < 0 || wait4(child, &status, 0, &usage) != child) {
        perror("bench_measure");
        return 1;
    }
    if (writeReport(argv[1], now() - started, &usage) != 0) {
        return 1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
