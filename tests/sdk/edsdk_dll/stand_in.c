/* Stands in for the camera maker's EDSDK.dll, written from what is known of its functions and without a line
 * of ours.
 *
 * Each call is a line of EDSDK.log, beside this library, with the bytes of a path as they came and the
 * handles numbered as they were given out. Arguments that no SDK need put up with are marked there, and
 * refused. EDSDK.orders, where there is one, says which calls fail: "3 97" lets the third one answer 97.
 *
 * The TIFF that it writes has one grey pixel of 16 bits. */
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <windows.h>

#define SDK uint32_t __stdcall

enum { max_objects = 8, not_found = 34, refused = 96 };

typedef enum { released, input, image, output } kind_t;

typedef struct __EdsObject {
    kind_t kind;
    FILE* file;
} object_t;

typedef struct {
    uint32_t jpeg_quality;
    object_t* profile;
    uint32_t reserved;
} settings_t;

static object_t objects[max_objects];
static int n_objects, n_calls;

static FILE* open_beside(const wchar_t* ending, const wchar_t* mode) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"EDSDK.dll"), path, MAX_PATH);
    wcscpy(wcsrchr(path, L'.'), ending);
    return _wfopen(path, mode);
}

static uint32_t inq_order(void) {
    FILE* const orders = open_beside(L".orders", L"r");
    unsigned call = 0, code = 0, order = 0;
    while (orders != NULL && fscanf(orders, "%u %u", &call, &code) == 2)
        order = call == (unsigned)n_calls ? code : order;
    if (orders != NULL)
        fclose(orders);
    return order;
}

/* The number of an open handle of this kind; 0 for every other value. */
static int number_of(const object_t* object, kind_t kind) {
    for (int i = 0; i < n_objects; ++i)
        if (object == &objects[i] && object->kind == kind)
            return i + 1;
    return 0;
}

/* Logs a call, and says what it is to answer. */
static uint32_t call(int is_sound, const char* format, ...) {
    FILE* const log = open_beside(L".log", L"ab");
    va_list arguments;
    va_start(arguments, format);
    vfprintf(log, format, arguments);
    va_end(arguments);
    fputs(is_sound ? "\n" : " BAD ARGUMENTS\n", log);
    fclose(log);
    ++n_calls;
    return is_sound ? inq_order() : refused;
}

SDK EdsInitializeSDK(void) {
    return call(1, "EdsInitializeSDK()");
}

SDK EdsTerminateSDK(void) {
    int n_open = 0;
    for (int i = 0; i < n_objects; ++i)
        n_open += objects[i].kind != released;
    return call(n_open == 0, "EdsTerminateSDK()");
}

SDK EdsCreateFileStream(const char* path, uint32_t disposition, uint32_t access, object_t** stream) {
    const int is_input = disposition == 2 && access == 2, is_output = disposition == 1 && access == 1;
    const int is_sound =
        (is_input || is_output) && *path != '\0' && stream != NULL && n_objects < max_objects;
    const uint32_t code = call(is_sound, "EdsCreateFileStream(%s, %u, %u)", path, disposition, access);
    wchar_t wide[4096] = L"";
    if (code != 0)
        return code;
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, wide, 4096);
    FILE* const file = _wfopen(wide, is_input ? L"rb" : L"wb");
    if (file == NULL)
        return not_found;
    *stream = &objects[n_objects++];
    **stream = (object_t){is_input ? input : output, file};
    return 0;
}

SDK EdsCreateImageRef(object_t* stream, object_t** picture) {
    const int from = number_of(stream, input);
    const uint32_t code = call(from > 0 && picture != NULL, "EdsCreateImageRef(#%d)", from);
    if (code == 0) {
        *picture = &objects[n_objects++];
        **picture = (object_t){image, NULL};
    }
    return code;
}

SDK EdsSaveImage(object_t* picture, uint32_t target, settings_t settings, object_t* stream) {
    const int from = number_of(picture, image), to = number_of(stream, output);
    const int is_default = settings.jpeg_quality == 0 && settings.profile == NULL && settings.reserved == 0;
    const int is_sound = from > 0 && to > 0 && is_default;
    const uint32_t code = call(is_sound, "EdsSaveImage(#%d, %u, #%d)", from, target, to);
    static const struct {
        uint16_t tag, type;
        uint32_t count, value;
    } fields[] = {{256, 4, 1, 1}, {257, 3, 1, 1}, {258, 3, 1, 16}, {259, 3, 1, 1}, {262, 3, 1, 1},
                  {273, 4, 1, 8}, {277, 3, 1, 1}, {278, 3, 1, 1},  {279, 4, 1, 2}};
    if (code == 0) {
        fwrite("II*\0\12\0\0\0\0\200\11", 12, 1, stream->file); /* with the pixel in it */
        fwrite(fields, sizeof fields, 1, stream->file);
        fwrite("\0\0\0", 4, 1, stream->file);
    }
    return code;
}

SDK EdsRelease(object_t* object) {
    const int number = object != NULL ? number_of(object, object->kind) : 0;
    const int is_sound = number > 0 && object->kind != released;
    if (is_sound && object->file != NULL)
        fclose(object->file);
    if (is_sound)
        object->kind = released;
    return call(is_sound, "EdsRelease(#%d)", number);
}
