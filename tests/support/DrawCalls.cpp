#include "support/DrawCalls.h"

#include <dlfcn.h>

#include <cstring>
#include <utility>

namespace NELK
{

namespace
{

using AnyFunction = void (*)();

DrawCalls* listener = nullptr;

void tell(const DrawCall& call)
{
    if (listener)
        listener->whenDrawn(call);
}

/// A function of OpenGL and what Qt gets in its place.
template <typename Function>
struct Interposed
{
    static inline Function* real = nullptr;
};

// Each has a type of its own, since the ones that OpenGL has are shared between functions.
struct DrawArrays : Interposed<void QOPENGLF_APIENTRY(GLenum, GLint, GLsizei)>
{
    static void QOPENGLF_APIENTRY call(GLenum primitive, GLint first, GLsizei count)
    {
        tell({primitive, first, count, -1});
        real(primitive, first, count);
    }
};

struct DrawElements : Interposed<void QOPENGLF_APIENTRY(GLenum, GLsizei, GLenum, const void*)>
{
    static void QOPENGLF_APIENTRY call(GLenum primitive, GLsizei count, GLenum type, const void* indices)
    {
        tell({primitive, 0, count, -1});
        real(primitive, count, type, indices);
    }
};

struct DrawArraysInstanced : Interposed<void QOPENGLF_APIENTRY(GLenum, GLint, GLsizei, GLsizei)>
{
    static void QOPENGLF_APIENTRY call(GLenum primitive, GLint first, GLsizei count, GLsizei instances)
    {
        tell({primitive, first, count, instances});
        if (!listener || !listener->swallowsInstances)
            real(primitive, first, count, instances);
    }
};

struct DrawElementsInstanced : Interposed<void QOPENGLF_APIENTRY(GLenum, GLsizei, GLenum, const void*, GLsizei)>
{
    static void QOPENGLF_APIENTRY call(GLenum primitive, GLsizei count, GLenum type, const void* indices,
                                       GLsizei instances)
    {
        tell({primitive, 0, count, instances});
        real(primitive, count, type, indices, instances);
    }
};

struct BufferData : Interposed<void QOPENGLF_APIENTRY(GLenum, GLsizeiptr, const void*, GLenum)>
{
    static void QOPENGLF_APIENTRY call(GLenum target, GLsizeiptr size, const void* data, GLenum usage)
    {
        if (listener && listener->whenUploaded)
            listener->whenUploaded({target, size, data, usage});
        real(target, size, data, usage);
    }
};

template <typename Function>
AnyFunction interpose(AnyFunction real)
{
    Function::real = reinterpret_cast<decltype(Function::real)>(real);
    return reinterpret_cast<AnyFunction>(&Function::call);
}

struct Entry
{
    const char* name;
    AnyFunction (*interpose)(AnyFunction real);
};

constexpr Entry entries[] = {
    {"glDrawArrays", interpose<DrawArrays>},
    {"glDrawElements", interpose<DrawElements>},
    {"glDrawArraysInstanced", interpose<DrawArraysInstanced>},
    {"glDrawElementsInstanced", interpose<DrawElementsInstanced>},
    {"glBufferData", interpose<BufferData>},
};

AnyFunction realAddress(const GLubyte* name)
{
    using Resolver = AnyFunction (*)(const GLubyte*);
    static void* const library = dlopen("libGL.so.1", RTLD_LAZY);
    static const auto resolve = reinterpret_cast<Resolver>(dlsym(library, "glXGetProcAddressARB"));
    return resolve(name);
}

AnyFunction addressForQt(const GLubyte* name)
{
    const AnyFunction real = realAddress(name);
    for (const Entry& entry : entries) {
        if (std::strcmp(entry.name, reinterpret_cast<const char*>(name)) == 0)
            return entry.interpose(real);
    }
    return real;
}

} // namespace

DrawCalls::DrawCalls(std::function<void(const DrawCall&)> drawn, std::function<void(const Upload&)> uploaded)
    : whenDrawn(std::move(drawn)), whenUploaded(std::move(uploaded))
{
    listener = this;
}

DrawCalls::~DrawCalls()
{
    listener = nullptr;
}

} // namespace NELK

// Qt asks for one of these, and finds what the executable exports before what libraries do.

extern "C" Q_DECL_EXPORT NELK::AnyFunction glXGetProcAddress(const GLubyte* name)
{
    return NELK::addressForQt(name);
}

extern "C" Q_DECL_EXPORT NELK::AnyFunction glXGetProcAddressARB(const GLubyte* name)
{
    return NELK::addressForQt(name);
}
