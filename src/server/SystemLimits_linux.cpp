#include "server/SystemLimits.h"

#ifdef __linux__
#include <malloc.h>
#include <sys/resource.h>
#endif

namespace sysadmin::server {

void ReturnFreedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void AllowManyFiles() {
#ifdef __linux__
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) != 0)
        return;
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
#endif
}

} // namespace sysadmin::server
