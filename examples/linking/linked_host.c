/* Converts IMG_0001.CR2 in the working folder. */
#include <raw_to_tiff.h>
#include <stdio.h>

int main(void) {
    const struct raw_to_tiff_location raw = {NULL, NULL, u"IMG_0001.CR2"};
    const struct raw_to_tiff_location tiff = {NULL, NULL, u"IMG_0001.tif"};
    const int answer = convert_raw_to_tiff(&raw, &tiff);
    printf("answer: %d\n", answer);
    return answer;
}
