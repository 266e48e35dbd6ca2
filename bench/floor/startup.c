/* Floor of start-up and exit: the three start-up lines and the prompt,
 * then one line read ("exit"). */
#include "floor.h"

int main(int argc, char *argv[]) {
    char linea[4096];
    (void)argc;
    floor_arranque(argv[0]);
    floor_prompt();
    floor_linea(linea, sizeof linea);
    return 0;
}
