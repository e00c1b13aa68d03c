/* The list manager: contexts, each with any number of named lists of five kinds. A list's elements
 * have a data pointer and, in hash tables, a key; neither the data nor the bytes of a key are
 * copied, so a key's bytes must stay as they are for as long as the element is in the table.
 *
 * Results are CS_SUCCEED, CS_FAIL for what is refused or not there, CS_MEM_ERROR, and LM_NOT_FOUND
 * for a key that the table does not hold. An operation that runs out of memory leaves its context
 * or list as it was (for LM_LIST_SPARES see there). A null context or list gives CS_FAIL; null in
 * place of any other pointer, where the description does not allow it, is a fatal usage error. So
 * are unknown codes, and a context, list or element that has been freed, as far as its memory still
 * tells.
 *
 * A context and its lists are not locked: one thread at a time. */
#ifndef TVXCOMN_LISTS_H
#define TVXCOMN_LISTS_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

typedef struct lm_context lm_context;
typedef struct lm_list lm_list;
typedef struct lm_element lm_element;

#define LM_NOT_FOUND 34 /* result: the key is not in the table */

/* Gives a block of `size` bytes, aligned as malloc does, or null. `user` is the value that was
 * given together with the routine. */
typedef void* lm_allocate(size_t size, void* user);
/* Takes such a block back; never null. */
typedef void lm_release(void* block, void* user);

/* Called with data pointers (by LM_PRINT_ALL with keys too); 0 ends the walk. It must not change
 * the list. */
typedef int32_t lm_function(void* data);

/* ---- Contexts ------------------------------------------------------------------------------ */

#define LM_LEAST_VERSION 1100

/* The length of a name is in bytes; CS_NULLTERM measures a NUL-terminated one and counts its NUL,
 * CS_UNUSED is 0. Other negative lengths are a fatal usage error. Names are copied. */

/* Creates a context, whose memory comes from comn_malloc or from the routines given. A `version`
 * below LM_LEAST_VERSION is a fatal usage error. CS_SUCCEED; CS_MEM_ERROR with nothing left
 * allocated and `*context` as it was. */
TVXCOMN_API int32_t lm_initlm(int32_t version, const char* name, int32_t name_length,
                              lm_context** context);
TVXCOMN_API int32_t lm_initlm_ex(int32_t version, const char* name, int32_t name_length,
                                 lm_context** context, lm_allocate* allocate, lm_release* release,
                                 void* user);

#define LM_DROP_LISTS 36

/* Ends a context. Mode CS_UNUSED: only when it has no lists, else CS_FAIL. LM_DROP_LISTS: its lists
 * are dropped first, with their elements. Other modes are a fatal usage error. */
TVXCOMN_API int32_t lm_exit(lm_context* context, int32_t mode);

/* ---- Lists --------------------------------------------------------------------------------- */

#define LM_ORDERED 13      /* doubly linked */
#define LM_HASH_CHAINED 14 /* hash table of chains, each with its newest element in front */
#define LM_HASH_OPEN 16    /* hash table of slots, probed one by one; full, it takes no more */
#define LM_QUEUE 18        /* first in, first out */
#define LM_STACK 19        /* last in, first out */

/* Creates a list, with memory from its context's routines or from those given. Kind CS_UNUSED is
 * the context's default; other unknown kinds are a fatal usage error. The list takes the context's
 * default hash size and default spare count (an LM_HASH_OPEN table 0 spares), keeps as many
 * elements in reserve, and becomes the context's newest and current list. CS_SUCCEED; CS_FAIL for
 * an LM_HASH_OPEN table when the default hash size is below 2; CS_MEM_ERROR. `*list` is set only on
 * success. */
TVXCOMN_API int32_t lm_list_alloc(lm_context* context, int32_t kind, const char* name,
                                  int32_t name_length, lm_list** list);
TVXCOMN_API int32_t lm_list_alloc_ex(lm_context* context, int32_t kind, const char* name,
                                     int32_t name_length, lm_list** list, lm_allocate* allocate,
                                     lm_release* release, void* user);

#define LM_DROP_ELEMENTS 35

/* Drops a list. Mode CS_UNUSED: only an empty one, else CS_FAIL. LM_DROP_ELEMENTS: its elements are
 * freed first (not what their data and keys point at). Other modes are a fatal usage error. When it
 * was its context's current list, the newest that remains becomes current. */
TVXCOMN_API int32_t lm_list_drop(lm_list* list, int32_t mode);

/* ---- Operations ----------------------------------------------------------------------------
 *
 * A list has a current element, which most operations move and some work on; there is none at
 * first, and none in an empty list. In an LM_ORDERED list, a queue or a stack, `key` may point at a
 * cursor, a variable of type lm_element* of the caller's. Holding an element of the list, it stands
 * in for the list's current element, which then stays where it is; holding null, it receives the
 * list's current element after the operation. An element that was deleted through another cursor is
 * not to be used any more (a fatal usage error); the list's own current element moves on when that
 * happens to it.
 *
 * In hash tables `key` and `key_length` are a key. Keys are equal when their lengths and bytes are.
 * No key is given when `key` is null or `key_length` is CS_UNUSED. LM_INSERT and LM_FIND need a
 * key, which may be null only when it has 0 bytes. A negative length is a fatal usage error. */

/* Inserts an element with `data`, which becomes current. Ordered list: at the place that
 * `key_length` names. Queue: at the tail. Stack: at the head. Table: under the key, whether or not
 * it is there already. CS_FAIL when there is no current element to insert beside, or no free slot
 * in an LM_HASH_OPEN table; CS_MEM_ERROR. An unknown place is a fatal usage error. */
#define LM_INSERT 20
#define LM_AT_HEAD 27
#define LM_AT_TAIL 28
#define LM_BEFORE_CURRENT 32
#define LM_AFTER_CURRENT 33

/* Deletes an element. Ordered list: the current one. Queue and stack: the head. The element before
 * it becomes current, after the head the new head. Table: the one that LM_FIND would find, or
 * without a key the current one. The element before it in its chain becomes current, or else the
 * one behind it, or else none; slots of an LM_HASH_OPEN table are chains of one. CS_FAIL when there
 * is no such element; LM_NOT_FOUND. */
#define LM_DELETE 21

/* Table: makes the element with the key current, of several the one inserted last (in an
 * LM_HASH_OPEN table, the first that probing meets). LM_NOT_FOUND. Other kinds: CS_FAIL. */
#define LM_FIND 22

/* Sets the data of the current element, in tables of the one with the key if one is given. It does
 * not become current. CS_FAIL when there is none; LM_NOT_FOUND. */
#define LM_SET_DATA 23

/* Move to the next or previous element: in tables bucket by bucket, each from its front. CS_FAIL,
 * and no move, when there is none or no current element. */
#define LM_NEXT 24
#define LM_PREVIOUS 25

/* Queue and stack: makes the head current. Other kinds: no change. CS_SUCCEED. */
#define LM_CURRENT 26

/* Move to the first or last element. CS_SUCCEED, also in an empty list. */
#define LM_FIRST 27
#define LM_LAST 28

/* Calls the list's function with the data of the current element, in tables of the one with the key
 * if one is given. Moves nothing. CS_SUCCEED; CS_FAIL when the function returns 0 or is not set, or
 * there is no current element, of which tables print "\nNULL\n" to the debug output; LM_NOT_FOUND.
 */
#define LM_APPLY 29

/* Calls the list's function with the data of every element in the order of LM_NEXT. Tables print to
 * the debug output for every bucket "\nKeys:\n" before calling it with every key of the bucket,
 * "\nData:\n" before calling it with the data of each, and "\n"; for an empty bucket
 * "\n***Chain empty***\n". Moves nothing. CS_SUCCEED; CS_FAIL as soon as the function returns 0, or
 * when there is none. */
#define LM_PRINT_ALL 30

/* The same with the lm_function* that `data` is, data only, without printing. */
#define LM_APPLY_ALL 31

/* Does one of these operations. `out`, unless null, receives the data of the element that is
 * current after it (or is held by the cursor, if that held one before), null if there is none,
 * whatever the result. Unknown operations are a fatal usage error. */
TVXCOMN_API int32_t lm_list_op(lm_list* list, int32_t operation, void* key, int32_t key_length,
                               void* data, void** out);

/* ---- Properties ---------------------------------------------------------------------------- */

#define LM_GET 33
#define LM_SET 34
#define LM_RESET 35

/* Of lists. Counts, sizes and kinds are int32_t. */
#define LM_LIST_KIND 1 /* read only */
/* Tables only, for others CS_FAIL. To set it inserts all elements of the table anew, bucket by
 * bucket from the front (so two elements with equal keys in a chain change places), the last of
 * which becomes current; CS_MEM_ERROR. CS_FAIL for a size below 1, for an LM_HASH_OPEN table below
 * 2 or below the number of its elements. Reset: the context's default. */
#define LM_LIST_HASH_SIZE 2
/* Up to how many elements are kept in reserve when they are deleted. To raise it allocates as many
 * more, to lower it frees as many fewer. A negative count is refused with CS_FAIL. CS_MEM_ERROR:
 * the count is as it was, but no elements are in reserve. An LM_HASH_OPEN table has no use for the
 * reserve. Reset: the context's default. */
#define LM_LIST_SPARES 3
#define LM_LIST_COUNT 8   /* read only: the number of elements */
#define LM_LIST_CONTEXT 9 /* read only: lm_context* */
/* Read only. The name and a NUL are stored if they fit into `buffer_length`; the out length is
 * theirs in any case. */
#define LM_LIST_NAME 10
#define LM_LIST_FUNCTION 11 /* lm_function* of LM_APPLY and LM_PRINT_ALL. Reset: null */
#define LM_LIST_VALUE 12    /* void* for the caller's use. Reset: null */

/* Of contexts. */
#define LM_CONTEXT_KIND 1      /* default kind; an unknown one is a fatal usage error. LM_ORDERED */
#define LM_CONTEXT_HASH_SIZE 2 /* default hash size; below 1 it is refused, CS_FAIL. 10 */
#define LM_CONTEXT_SPARES 3    /* default spare count; below 0 it is refused, CS_FAIL. 0 */
#define LM_CONTEXT_VERSION 4   /* read only */
#define LM_CONTEXT_LISTS 5     /* read only: the number of lists */
/* The name of the current list, read as LM_LIST_NAME; CS_FAIL when there is no list. To set it
 * makes the newest list current whose name begins with the `buffer_length` bytes given (1 or more);
 * if there is none, that is a fatal usage error. Reset: the newest list becomes current. */
#define LM_CONTEXT_CURRENT_NAME 6
#define LM_CONTEXT_CURRENT 7 /* read only: lm_list*, null when there is no list */

/* Read, set or reset a property. A value is read from and stored to `buffer`, which needs no
 * alignment and may be null for LM_RESET; `buffer_length` counts for names only, but to read a
 * property that is read only (other than a name) it must be CS_UNUSED. `out_length`, unless null,
 * receives the size of a value that has been read, else 0. Unknown properties and actions, and
 * setting or resetting what is read only, are fatal usage errors. */
TVXCOMN_API int32_t lm_list_prop(lm_list* list, int32_t action, int32_t property, void* buffer,
                                 int32_t buffer_length, int32_t* out_length);
TVXCOMN_API int32_t lm_property(lm_context* context, int32_t action, int32_t property, void* buffer,
                                int32_t buffer_length, int32_t* out_length);

TVXCOMN_END

#endif
