/* The version of WexPolicy: told here, and taken from here by everything else. For C, C++ and
 * resource compilers. */

#ifndef WEXPOL_PLATFORM_VERSION_H_
#define WEXPOL_PLATFORM_VERSION_H_

#define WEXPOL_VERSION_MAJOR 1
#define WEXPOL_VERSION_MINOR 0
#define WEXPOL_VERSION_PATCH 0

#define WEXPOL_VERSION_TEXT_(major, minor, patch) #major "." #minor "." #patch
#define WEXPOL_VERSION_TEXT(major, minor, patch) WEXPOL_VERSION_TEXT_(major, minor, patch)
/* "1.0.0" */
#define WEXPOL_VERSION \
  WEXPOL_VERSION_TEXT(WEXPOL_VERSION_MAJOR, WEXPOL_VERSION_MINOR, WEXPOL_VERSION_PATCH)

#endif /* WEXPOL_PLATFORM_VERSION_H_ */
