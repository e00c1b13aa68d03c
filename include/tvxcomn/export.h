/* Marks what the shared libraries export; everything else in them is hidden. */
#ifndef TVXCOMN_EXPORT_H
#define TVXCOMN_EXPORT_H

#ifdef __cplusplus
#define TVXCOMN_BEGIN extern "C" {
#define TVXCOMN_END }
#else
#define TVXCOMN_BEGIN
#define TVXCOMN_END
#endif

#define TVXCOMN_API __attribute__((visibility("default")))

#endif
