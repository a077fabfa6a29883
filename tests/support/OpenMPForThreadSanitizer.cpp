// What ThreadSanitizer has to know of OpenMP. The packaged runtime of g++ is not instrumented, so the sanitizer does
// not see that a team starts after what was done before it and ends before what is done after it. The call that runs a
// team is caught on its way to the runtime, and both are told; what two members do at once is still reported.

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace
{

/// One run of a team. Members meet at two places: were it one, a member that starts late would seem to come after
/// another that has ended, and their races would pass unseen.
struct Team
{
    void (*work)(void*);
    void* data;
    char forked = 0;
    char joined = 0;
};

void runMember(void* argument)
{
    auto* team = static_cast<Team*>(argument);
    __tsan_acquire(&team->forked);
    team->work(team->data);
    __tsan_release(&team->joined);
}

} // namespace

extern "C" void GOMP_parallel(void (*work)(void*), void* data, unsigned memberCount, unsigned flags)
{
    using Function = void(void (*)(void*), void*, unsigned, unsigned);
    static const auto parallelOfRuntime = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "GOMP_parallel"));
    Team team{work, data};
    __tsan_release(&team.forked);
    parallelOfRuntime(runMember, &team, memberCount, flags);
    __tsan_acquire(&team.joined);
}
