#ifndef KARTIX_AUTOMATION_H
#define KARTIX_AUTOMATION_H

/**
 * Kartix for hosts of every language: the four classes Kartix, DBETXTDatabase, CPersonalien and CFahrerkarte, their
 * members called by name or by slot. docs/reference.md lists them; kartix_describe gives the same as data.
 *
 *     kartix_object kartix;
 *     kartix_value session[2] = {kartix_text("Meier"), kartix_text("4711")}, card = kartix_text("1"), result;
 *     if (kartix_create("Kartix", &kartix) != KARTIX_OK ||
 *         kartix_call(kartix, "init", session, 2, &result) != KARTIX_OK) return fail(kartix_error_text());
 *     if (result.as.boolean && kartix_call(kartix, "ZKRAnfrage", &card, 1, &result) == KARTIX_OK &&
 *         result.as.integer == 1 && kartix_get(kartix, "kartennr", &result) == KARTIX_OK) puts(result.as.text);
 *     kartix_release(kartix);
 *
 * Texts are UTF-8 and end with NUL. Every function but kartix_error_text gives KARTIX_OK or the code of a failure,
 * whose words kartix_error_text then holds. A failed function has called nothing, and has changed nothing behind the
 * pointers that it was given. None throws, and none ends the process over a wrong argument; a pointer that is not
 * NULL has to be valid.
 *
 * What this header declares stays as it is: functions keep their names, arguments and meaning, constants their
 * values, structures their size and layout. The library's soname, libkartix.so.1, says so; what is added comes with a
 * symbol version of its own.
 */

#include <stdint.h>

#include "kartix/Export.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Codes of failures. */
enum {
  KARTIX_OK = 0,
  KARTIX_NULL_POINTER = 1,   /**< a pointer that is needed is NULL */
  KARTIX_UNKNOWN_OBJECT = 2, /**< no such object, or it has been released */
  KARTIX_UNKNOWN_CLASS = 3,
  KARTIX_UNKNOWN_MEMBER = 4, /**< no such name, slot or way to use it: setting what can only be read */
  KARTIX_WRONG_COUNT = 5,    /**< too few or too many arguments */
  KARTIX_WRONG_TYPE = 6,     /**< an argument of another type than the member's */
  KARTIX_OUT_OF_RANGE = 7,   /**< a number beyond the range of its argument */
  KARTIX_INVALID_TEXT = 8,   /**< a text is not UTF-8 */
  KARTIX_TOO_LATE = 9,       /**< the component that the process shares is in use already */
  KARTIX_NO_MEMORY = 10,
  KARTIX_FAILED = 11 /**< anything else, told by kartix_error_text */
};

/** Types of a value. */
enum {
  KARTIX_EMPTY = 0, /**< no value: the result of what has none, an optional argument that is left out */
  KARTIX_BOOLEAN = 1,
  KARTIX_INTEGER = 2,
  KARTIX_TEXT = 3
};

/** A value of the type that `type` tells. */
typedef struct kartix_value {
  int32_t type;
  union {
    int32_t boolean; /**< 0 or 1; any other number counts as 1 */
    int64_t integer;
    const char* text;
  } as;
} kartix_value;

/** An object. Numbers are never used again; 0 is no object. */
typedef uint64_t kartix_object;

/** Words for what the last function did that was called on this thread; empty after KARTIX_OK. The text stays until
   the next call on this thread. */
KARTIX_EXPORT const char* kartix_error_text(void);

/* -- Objects ----------------------------------------------------------------------------------------------------

   Texts that are passed in belong to the caller and are read during the call only. Texts that come out, results and
   arguments written back alike, belong to the object: they stay until the next call on it, or until it is released.
   One object, like one operation, is for one thread at a time. */

/** A new object of the class called `class_name`, to be given back with kartix_release. */
KARTIX_EXPORT int32_t kartix_create(const char* class_name, kartix_object* object);

/** Destroys `object`; within a call on it, at the end of that call. */
KARTIX_EXPORT int32_t kartix_release(kartix_object object);

/** Calls the method `member`, or reads the property `member` with an index. Arguments that the member writes back are
    replaced in `arguments`. `result` may be NULL. */
KARTIX_EXPORT int32_t kartix_call(kartix_object object, const char* member, kartix_value* arguments, int32_t count,
                                  kartix_value* result);

/** Reads the property `member`. */
KARTIX_EXPORT int32_t kartix_get(kartix_object object, const char* member, kartix_value* result);

/** Writes the property `member`. */
KARTIX_EXPORT int32_t kartix_let(kartix_object object, const char* member, kartix_value value);

/** Calls the member in `slot`, which begins at 1, whatever its kind. */
KARTIX_EXPORT int32_t kartix_call_slot(kartix_object object, int32_t slot, kartix_value* arguments, int32_t count,
                                       kartix_value* result);

/** Values from what C has. */
static inline kartix_value kartix_text(const char* text) {
  kartix_value value;
  value.type = KARTIX_TEXT;
  value.as.text = text;
  return value;
}
static inline kartix_value kartix_integer(int64_t number) {
  kartix_value value;
  value.type = KARTIX_INTEGER;
  value.as.integer = number;
  return value;
}
static inline kartix_value kartix_boolean(int32_t truth) {
  kartix_value value;
  value.type = KARTIX_BOOLEAN;
  value.as.boolean = truth;
  return value;
}
static inline kartix_value kartix_empty(void) {
  kartix_value value;
  value.type = KARTIX_EMPTY;
  value.as.integer = 0;
  return value;
}

/* -- The classes as data ---------------------------------------------------------------------------------------- */

/** Kinds of a member. An indexed property is one to get with arguments. */
enum { KARTIX_METHOD = 0, KARTIX_GET = 1, KARTIX_LET = 2 };

/** Directions of an argument: read, read and written back, written back. */
enum { KARTIX_IN = 0, KARTIX_IN_OUT = 1, KARTIX_OUT = 2 };

typedef struct kartix_argument {
  const char* name;
  int32_t type;      /**< of its value */
  int32_t bits;      /**< 16 or 32 for an integer, else 0 */
  int32_t direction; /**< what is KARTIX_OUT may be KARTIX_EMPTY */
  int32_t optional;  /**< 1: may be KARTIX_EMPTY or, at the end, be left out */
} kartix_argument;

typedef struct kartix_member {
  const char* name;
  int32_t kind;
  int32_t result; /**< type of the result */
  int32_t bits;   /**< 16 or 32 for an integer, else 0 */
  int32_t count;  /**< of the arguments */
  kartix_argument arguments[8];
} kartix_member;

/** What the member in `slot` of the class `class_name` is. The texts in it stay for as long as the library is loaded.
    KARTIX_UNKNOWN_MEMBER beyond the last slot. */
KARTIX_EXPORT int32_t kartix_describe(const char* class_name, int32_t slot, kartix_member* member);

/** The name of class number `index`, which begins at 0. KARTIX_UNKNOWN_CLASS beyond the last class. */
KARTIX_EXPORT int32_t kartix_class_name(int32_t index, const char** class_name);

/* -- What the host offers ---------------------------------------------------------------------------------------

   The functions of the host are called on the thread of the operation. They may call this interface. */

/** An automation class of the host. */
typedef struct kartix_host_class {
  void* context; /**< passed to `create` */
  /** A new object; NULL when it cannot be created. */
  void* (*create)(void* context);
  /** Calls `member` of `object`: 0 with the result in `result`, or anything else with the words for the clerk there.
     A text in `result` belongs to the host and has to stay until the next call on the object, or its release. */
  int32_t (*call)(void* object, const char* member, const kartix_value* arguments, int32_t count,
                  kartix_value* result);
  /** Takes an object back; may be NULL. */
  void (*release)(void* object);
} kartix_host_class;

/** Offers the class called `class_name` to the component, in place of one of the same name. Objects are created for
   each exchange. `host_class` is copied; NULL takes the class away again. */
KARTIX_EXPORT int32_t kartix_register_class(const char* class_name, const kartix_host_class* host_class);

/** Lets the component's own objects perform the exchanges with the gateway that the settings name, for each class
   that the host has not registered: see docs/objects.md. */
KARTIX_EXPORT int32_t kartix_use_gateway_objects(void);

/** Path under which an image file of an order lies on this machine; `name` is what an automation class was given with
    SetPhotographFilename or SetSignatureFilename. The text stays until the next call of this function on this thread.
 */
KARTIX_EXPORT int32_t kartix_image_file(const char* name, const char** path);

/** The settings of a host that keeps them itself. They are called as docs/settings.md calls them: "FS.ServerIP",
    "InfoDatei". Secret ones pass as they are, not scrambled. */
typedef struct kartix_settings {
  void* context; /**< passed to both functions */
  /** The value of `name`; NULL when there is none. The text belongs to the host and has to stay until the next call.
   */
  const char* (*read)(void* context, const char* name);
  /** Keeps `value` for `name`: 0 when that was done. May be NULL: nothing can be kept. */
  int32_t (*write)(void* context, const char* name, const char* value);
} kartix_settings;

/** Takes the settings from the host in place of the settings store of the user. `settings` is copied. To be called
    before anything that needs the component, which is all of the above but kartix_describe and kartix_class_name:
   else KARTIX_TOO_LATE. */
KARTIX_EXPORT int32_t kartix_use_settings(const kartix_settings* settings);

/** The last message that the clerk was shown, or would have been shown if there were a display, since the last call
   of `init` or an operation began: its number in the error catalogue, 0 for one without, and its text, empty when
   there was none. The text stays until the next call of this function on this thread. */
KARTIX_EXPORT int32_t kartix_last_error(int32_t* number, const char** text);

/** Lets a script play the clerk from now on, for the tests of a host. All three are files or texts that may be NULL:
    the steps to take, as `man kartix` describes them; a file for what the clerk saw and did; "YYYY-MM-DDTHH:MM:SS",
    from which the component's clock runs on. With none of them the windows come back. KARTIX_FAILED when the settings
    store did not permit it at the component's first use (`TestClerk` = 1 in section "ZKR"), when something of it
    cannot be used, or while a window is open. */
KARTIX_EXPORT int32_t kartix_use_test_clerk(const char* script, const char* transcript, const char* now);

/** Whether the script fits, once the operations that it is for are done: empty when all its steps were taken, else
   what was expected, what was found, and the windows, controls, entries and rows that there were. The text stays
   until the next call of this function on this thread. */
KARTIX_EXPORT int32_t kartix_test_clerk_mismatch(const char** text);

#ifdef __cplusplus
}
#endif

#endif
