/* Stands in for the camera maker's EDSDK.dll, written from what is known of its functions and without a line
 * of ours. Each call is a line of EDSDK.log, beside this library, with the bytes of a path as they came and
 * the handles numbered as they were given out. Arguments that no SDK need put up with are marked there, and
 * refused. EDSDK.orders, where there is one, says which calls fail: "3 97" lets the third one answer 97. */
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <windows.h>

#define SDK uint32_t __stdcall

enum { not_found = 34, refused = 96 };

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

static object_t objects[3]; /* as many as a conversion needs */
static int n_objects, n_open, n_calls;

static FILE* open_beside(const wchar_t* ending, const wchar_t* mode) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"EDSDK.dll"), path, MAX_PATH);
    wcscpy(wcsrchr(path, L'.'), ending);
    return _wfopen(path, mode);
}

static object_t* make_object(kind_t kind, FILE* file) {
    objects[n_objects] = (object_t){kind, file};
    ++n_open;
    return &objects[n_objects++];
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
    FILE *const log = open_beside(L".log", L"ab"), *const orders = open_beside(L".orders", L"r");
    int number = 0, code = 0, order = 0;
    va_list arguments;
    va_start(arguments, format);
    vfprintf(log, format, arguments);
    va_end(arguments);
    fputs(is_sound ? "\n" : " BAD ARGUMENTS\n", log);
    fclose(log);
    ++n_calls;
    while (orders != NULL && fscanf(orders, "%d %d", &number, &code) == 2)
        order = number == n_calls ? code : order;
    if (orders != NULL)
        fclose(orders);
    return is_sound ? (uint32_t)order : refused;
}

SDK EdsInitializeSDK(void) {
    return call(1, "EdsInitializeSDK()");
}

SDK EdsTerminateSDK(void) {
    return call(n_open == 0, "EdsTerminateSDK()");
}

SDK EdsCreateFileStream(const char* path, uint32_t disposition, uint32_t access, object_t** stream) {
    const int is_input = disposition == 2 && access == 2, is_output = disposition == 1 && access == 1;
    const int is_sound = (is_input || is_output) && n_objects < 3;
    const uint32_t code = call(is_sound, "EdsCreateFileStream(%s, %u, %u)", path, disposition, access);
    wchar_t wide[4096] = L"";
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, wide, 4096);
    FILE* const file = code == 0 ? _wfopen(wide, is_input ? L"rb" : L"wb") : NULL;
    if (file != NULL)
        *stream = make_object(is_input ? input : output, file);
    return code == 0 && file == NULL ? not_found : code;
}

SDK EdsCreateImageRef(object_t* stream, object_t** picture) {
    const int from = number_of(stream, input);
    const uint32_t code = call(from > 0 && n_objects < 3, "EdsCreateImageRef(#%d)", from);
    if (code == 0)
        *picture = make_object(image, NULL);
    return code;
}

SDK EdsSaveImage(object_t* picture, uint32_t target, settings_t settings, object_t* stream) {
    const int from = number_of(picture, image), to = number_of(stream, output);
    const int is_default = settings.jpeg_quality == 0 && settings.profile == NULL && settings.reserved == 0;
    const uint32_t code = call(from && to && is_default, "EdsSaveImage(#%d, %u, #%d)", from, target, to);
    /* The header, one grey pixel of 16 bits, and the nine fields that such a picture needs. */
    static const uint16_t tiff[] = {0x4949, 42, 10,  0, 0x8000, 9, 256, 4, 1,   0, 1,   0, 257, 3, 1,   0,
                                    1,      0,  258, 3, 1,      0, 16,  0, 259, 3, 1,   0, 1,   0, 262, 3,
                                    1,      0,  1,   0, 273,    4, 1,   0, 8,   0, 277, 3, 1,   0, 1,   0,
                                    278,    3,  1,   0, 1,      0, 279, 4, 1,   0, 2,   0, 0,   0};
    return code == 0 && fwrite(tiff, sizeof tiff, 1, stream->file) != 1 ? refused : code;
}

SDK EdsRelease(object_t* object) {
    const int number = object != NULL ? number_of(object, object->kind) : 0;
    const int is_sound = number > 0 && object->kind != released;
    if (is_sound && object->file != NULL)
        fclose(object->file);
    if (is_sound)
        object->kind = released;
    n_open -= is_sound;
    return call(is_sound, "EdsRelease(#%d)", number);
}
