/* Converts a raw file with the library, as an application that embeds it does.
 *
 *     host LIBRARY VOLUME FOLDER RAW TIFF
 *     host convert_raw_to_tiff.dll C: \photos\ IMG_0001.CR2 IMG_0001.tif
 *     host ./convert_raw_to_tiff.so "" '\photos\' IMG_0001.CR2 IMG_0001.tif
 */
#include <stdio.h>

#ifdef _WIN32 /* all that differs: the loader, and arguments that are UTF-16 already */
#include <windows.h>
#define main wmain
#define load(path) LoadLibraryW(path)
#define find(library, name) GetProcAddress(library, name)
#define to_utf16(argument) (argument)
typedef wchar_t argument_t, utf16_t;
#else
#include <dlfcn.h>
#include <locale.h>
#include <string.h>
#include <uchar.h>
#define load(path) dlopen(path, RTLD_NOW)
#define find(library, name) dlsym(library, name)
typedef char argument_t;
typedef char16_t utf16_t;

static const utf16_t* to_utf16(const char* argument) {
    static utf16_t room[16384 + 1]; /* for all the texts; those without room are empty */
    static utf16_t* unit = room;
    const utf16_t* const text = unit;
    const char* const end = argument + strlen(argument) + 1;
    mbstate_t state = {0};
    setlocale(LC_CTYPE, "C.UTF-8");
    while (argument < end && end - argument <= room + 16384 - unit) {
        const size_t n_bytes = mbrtoc16(unit++, argument, (size_t)(end - argument), &state);
        if (n_bytes == 0 || n_bytes == (size_t)-1)
            break;
        argument += n_bytes == (size_t)-3 ? 0 : n_bytes; /* -3: the second unit of a pair */
    }
    return text;
}
#endif

/* Three texts with a zero at the end of each; a null pointer is an empty text. */
struct location {
    const utf16_t* volume; /* C: or \\server; empty on Linux */
    const utf16_t* folder; /* \photos\ */
    const utf16_t* name;   /* IMG_0001.CR2 */
};

typedef int convert_t(const struct location* raw, const struct location* tiff);

static const char* meaning_of(int answer) {
    switch (answer) {
    case 0:
        return "converted";
    case 10:
        return "there is no such raw file";
    default:
        return "the conversion failed";
    }
}

int main(int argc, argument_t** argv) {
    if (argc != 6) {
        fputs("usage: host LIBRARY VOLUME FOLDER RAW TIFF\n", stderr);
        return 2;
    }
    void* const library = load(argv[1]);
    convert_t* const convert =
        library == NULL ? NULL : (convert_t*)(void*)find(library, "convert_raw_to_tiff");
    if (convert == NULL) {
        fputs("host: the library cannot be loaded\n", stderr);
        return 2;
    }
    const struct location raw = {to_utf16(argv[2]), to_utf16(argv[3]), to_utf16(argv[4])};
    const struct location tiff = {raw.volume, raw.folder, to_utf16(argv[5])};
    const int answer = convert(&raw, &tiff);
    printf("%d: %s\n", answer, meaning_of(answer));
    return answer;
}
