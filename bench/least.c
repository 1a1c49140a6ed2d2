#include "least.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

/** The new text, which has `size` bytes; none when the file cannot be read. */
static char *newText(const char *path, const char *firstLine, struct stat *status, size_t *size)
{
    const size_t head = strlen(firstLine);
    const int fd = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0 || fstat(fd, status) != 0)
        return NULL;
    const size_t oldSize = (size_t)status->st_size;
    char *text = malloc(head + oldSize + 1);
    if (text == NULL || read(fd, text + head, oldSize) != (ssize_t)oldSize)
        return NULL;
    close(fd);
    text[head + oldSize] = '\0';
    const char *feed = memchr(text + head, '\n', oldSize);
    const size_t kept = feed == NULL ? 0 : oldSize - (size_t)(feed + 1 - (text + head));
    memmove(text + head, text + head + oldSize - kept, kept);
    memcpy(text, firstLine, head);
    *size = head + kept;
    return text;
}

static int writeNew(const char *path, const struct stat *status, const char *text, size_t size)
{
    const int fd = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0 || fchown(fd, status->st_uid, status->st_gid) != 0 || fchmod(fd, status->st_mode & 07777) != 0)
        return 1;
    if (write(fd, text, size) != (ssize_t)size || fsync(fd) != 0)
        return 1;
    return close(fd);
}

int leastReplace(const char *path, const char *firstLine)
{
    char temporary[4096];
    char link_[4096];
    char backup[4096];
    struct stat status;
    size_t size = 0;
    snprintf(temporary, sizeof temporary, "%s.tmp", path);
    snprintf(link_, sizeof link_, "%s.old.tmp", path);
    snprintf(backup, sizeof backup, "%s.old", path);
    char *text = newText(path, firstLine, &status, &size);
    if (text == NULL || writeNew(temporary, &status, text, size) != 0)
        return 1;
    free(text);
    return link(path, link_) != 0 || rename(link_, backup) != 0 || rename(temporary, path) != 0;
}

int leastSync(const char *directory)
{
    const int fd = open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0 || fsync(fd) != 0)
        return 1;
    return close(fd);
}
