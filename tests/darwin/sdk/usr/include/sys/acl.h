#pragma once

// acl(3)

#include <sys/types.h>

typedef struct _acl* acl_t;
typedef enum { ACL_TYPE_EXTENDED = 0x00000100 } acl_type_t;

#ifdef __cplusplus
extern "C" {
#endif

acl_t acl_init(int count);
acl_t acl_get_link_np(const char* path, acl_type_t type);
int acl_set_fd(int descriptor, acl_t list);
int acl_free(void* object);

#ifdef __cplusplus
}
#endif
