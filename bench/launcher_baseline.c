/* SPDX-FileCopyrightText: 2026 The ZSpace authors
 * SPDX-License-Identifier: MIT
 *
 * The least that a program must do that reports the start of the installer, starts it and does not wait: the baseline
 * of the launcher. Linked statically, too. */

#define _GNU_SOURCE
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#define INSTALLER                                                                                            \
    "/Library/Application Support/com.coraldesk.remote/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller"

extern char** environ;

static int openReport(const struct tm* fields)
{
    char name[128];
    mkdir("/var/log/com.coraldesk.remote", 0777);
    snprintf(name, sizeof name, "/var/log/com.coraldesk.remote/baseline_%04d%02d%02d_%02d%02d%02d.txt",
        fields->tm_year + 1900, fields->tm_mon + 1, fields->tm_mday, fields->tm_hour, fields->tm_min,
        fields->tm_sec);
    return open(name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

static void appendLine(void)
{
    struct timespec now;
    struct tm fields;
    char line[512];
    clock_gettime(CLOCK_REALTIME, &now);
    gmtime_r(&now.tv_sec, &fields);
    const int length = snprintf(line, sizeof line,
        "%04d-%02d-%02dT%02d:%02d:%02d.%03d Thread[%x]:\tRunning uninstall script: %s, args: (\"-uninstall\", YES)\n",
        fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
        fields.tm_sec, (int)(now.tv_nsec / 1000000), (unsigned)syscall(SYS_gettid), INSTALLER);
    const int report = openReport(&fields);
    if (report >= 0) {
        (void)!write(report, line, (size_t)length);
        close(report);
    }
    (void)!write(STDERR_FILENO, line, (size_t)length); /* the echo */
}

int main(void)
{
    char* const arguments[] = {INSTALLER, "-uninstall", "YES", NULL};
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    sigset_t signals;
    pid_t child;
    appendLine();
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawnattr_init(&attributes);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    posix_spawn(&child, INSTALLER, &actions, &attributes, arguments, environ);
    return 0;
}
