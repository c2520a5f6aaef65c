/* SPDX-License-Identifier: MIT */
/* What declares an interface in directfb.h, and nothing else. */
#ifndef LEAN_DIRECT_INTERFACE_H
#define LEAN_DIRECT_INTERFACE_H

#include <direct/types.h>

#define D_DECLARE_INTERFACE(name) typedef struct _##name name;
#define D_DEFINE_INTERFACE(name, ...)                                                                        \
    struct _##name {                                                                                         \
        void *priv;                                                                                          \
        int magic, refs;                                                                                     \
        DirectResult (*AddRef)(name * thiz);                                                                 \
        DirectResult (*Release)(name * thiz);                                                                \
        __VA_ARGS__                                                                                          \
    };
#define DECLARE_INTERFACE D_DECLARE_INTERFACE
#define DEFINE_INTERFACE D_DEFINE_INTERFACE

#endif
