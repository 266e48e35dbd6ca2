// The command table, the alias table and the resolution of a typed word to a
// command name (aliases first, then optional prefix abbreviations).
#include "core/core.h"

#include <cstdio>
#include <cstring>
#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "files/files.h"
#include "memfs/memfs.h"
#include "memory/memory.h"
#include "processes/processes.h"
#include "signals/signals.h"

namespace {

constexpr uint32_t OTROS = 0x1, INFO = 0x2, FICHEROS = 0x4, ENTORNO = 0x8, MEMORIA = 0x10,
                   LISTAMEMORIA = 0x20, PROCESOS = 0x40, SENALES = 0x80, SFMEMORIA = 0x100;

constexpr EntradaComando C[] = {
    {"version", Cmd_version, "\tIndica la version del shell", INFO},
    {"exit", Cmd_exit, "\tTermina la ejecucion del shell", OTROS},
    {"date", Cmd_fecha, "[-d|-t]\tMuestra la fecha y/o la hora actual", INFO},
    {"day", Cmd_date, "\tMuestra la fecha acual", INFO},
    {"time", Cmd_time, "\tMuestra la hora actual", INFO},
    {"pid", Cmd_pid, "[-p]\tMuestra el pid del shell o de su proceso padre", INFO},
    {"ppid", Cmd_ppid, "\tMuestra el pid del proceso padre del shell", PROCESOS},
    {"authors", Cmd_authors, "[-n|-l]\tMuestra los nombres y/o logins de los autores", INFO},
    {"systemd", Cmd_systemd, "[-d]\tMuestra información sobre systemd\n\t-d: distros que no lo usan", INFO},
    {"historic", Cmd_hist,
     "[-clear|-count|-N|N]\tMuestra (o borra)el historico de comandos\n\t-clear: borra el historico\n\t-count: "
     "dimension del historico\n\t-N: muestra los N ultimos\n\tN: repite el comando N",
     OTROS},
    {"command", Cmd_command, "[-N]\tRepite el comando N (del historico)", OTROS},
    {"prompt", Cmd_prompt,
     "[cad]\t cambia el prompt (simbolo de aviso) del shell a la cadena cad: \n\t\t %u: nombre usuario   \t %p: "
     "pid del shell\n\t\t %d: directorio actual\t %D: directorio actual (contraido)\n\t\t %B: Ultimo componente del "
     "directorio actual\n\t\t %m: nombre maquina   \t %o: nombre del S.O.\n\t\t %t el tabulador \t %n: fin de "
     "linea\n\t\t %%: el caracter %, %b: espacio en blanco",
     OTROS},
    {"sysinfo", Cmd_sysinfo, "\tMuestra informacion de la maquina donde corre el shell", INFO},
    {"help", Cmd_help,
     "[cmd|-lt|-T|-all]\tMuestra ayuda sobre los comandos\n\t-lt: lista topics de ayuda\n\t-T topic: lista comandos "
     "sobre ese topic\n\tcmd: info sobre el comando cmd\n\t-all: lista todos los topics con sus comandos",
     INFO},
    {"limits", Cmd_limits, "Muestra los limites de recursos del shell", INFO},
    {"chdir", Cmd_chdir, "[dir]\tCambia (o muestra) el directorio actual del shell", FICHEROS},
    {"chroot", Cmd_chroot, "[dir]\tCambia el directorio raiz del shell", FICHEROS},
    {"pwd", Cmd_pwd, "\tMuestra el directorio actual del shell", FICHEROS},
    {"open", Cmd_open,
     "fich m1 m2...\tAbre el fichero fich\n\ty lo anade a la lista de ficheros abiertos del shell\n\tm1, m2..es el "
     "modo de apertura (or bit a bit de los siguientes)\n\tcr: O_CREAT\tap: O_APPEND\n\tex: O_EXCL \tro: "
     "O_RDONLY\n\trw: O_RDWR \two: O_WRONLY\n\ttr: O_TRUNC",
     FICHEROS},
    {"close", Cmd_close,
     "df [-f]\tCierra el descriptor df y lo elimina de la lista de ficheros abiertos\n\t-f: cierra el descriptor "
     "aunque corresponada a un mapeo activo",
     FICHEROS},
    {"listopen", Cmd_listopen, "[n]\tLista los ficheros abiertos (al menos n) del shell", FICHEROS},
    {"dup", Cmd_dup, "df\tDuplica el descriptor de fichero df \n\ty anade una nueva entrada a la lista ficheros abiertos",
     FICHEROS},
    {"dup2", Cmd_dup2,
     "df df2\tDuplica el descriptor de fichero df  en df2 \n\ty anade una nueva entrada a la lista ficheros abiertos",
     FICHEROS},
    {"read", Cmd_read, "df addr cont\tTransfiere cont bytes del fichero \n\tdescrito por df a la dirección addr",
     FICHEROS},
    {"write", Cmd_write, "df addr cont\tTransfiere cont bytes desde la dirección addr \n\tal fichero descrito por df",
     FICHEROS},
    {"lseek", Cmd_lseek,
     "df off ref\tPosiciona el offset en df en off. ref es la referencia:\n\t\tSEEK_SET principio "
     "fichero\n\t\tSEEK_CUR posicion actual\n\t\tSEEK_END final del fichero",
     FICHEROS},
    {"readstr", Cmd_readstr, "df cont\t\tLee cont bytes del fichero con descriptor df\n\t\ty los muestra en pantalla",
     FICHEROS},
    {"writestr", Cmd_writestr, "df string\t Escribe el string string en el fichero descrito por df", FICHEROS},
    {"hardlink", Cmd_hardlink, "f1 f2\tCrea un enlace real a f1 de nombre f2", FICHEROS},
    {"symlink", Cmd_symlink, "f1 f2\t Crea un enlace symbolico a f1 de nombre f2", FICHEROS},
    {"link", Cmd_link, "[-s] f1 f2\t Crea un enlace real o symbolico (-s) a f1 de nombre f2", FICHEROS},
    {"create", Cmd_create, "[-f] [name]\tCrea un directorio o un fichero (-f)", FICHEROS},
    {"makefile", Cmd_makefile, "[name]\tCrea un fichero de nombre name", FICHEROS},
    {"makedir", Cmd_makedir, "[name]\tCrea un directorio de nombre name", FICHEROS},
    {"delete", Cmd_delete, "[name1 name2 ..]\tBorra ficheros o directorios vacios", FICHEROS},
    {"deltree", Cmd_deltree, "[name1 name2 ..]\tBorra ficheros o directorios no vacios recursivamente", FICHEROS},
    {"stat", Cmd_stat,
     "[-long][-link][-acc] name1 name2 ..\tlista ficheros;\n\t-long: listado largo\n\t-acc: acesstime\n\t-link: si "
     "es enlace simbolico, el path contenido",
     FICHEROS},
    {"list", Cmd_list,
     "[-reca] [-recb] [-hid][-long][-link][-acc] n1 n2 .. lista contenidos de directorios\n\t-long: listado "
     "largo\n\t-hid: incluye los ficheros ocultos\n\t-recb: recursivo (antes)\n\t-reca: recursivo "
     "(despues)\n\t-acc: acesstime\n\t-link: si es enlace simbolico, el path contenido",
     FICHEROS},
    {"listdir", Cmd_listdir,
     "[-hid][-long][-link][-acc] n1 n2 ..lista contenidos de directorios\n\t-long: listado largo\n\t-hid: incluye "
     "los ficheros ocultos\n\t-acc: acesstime\n\t-link: si es enlace simbolico, el path contenido",
     FICHEROS},
    {"listrec", Cmd_listrec,
     "[-hid][-long][-link][-acc] n1 n2 ..lista recursivamente contenidos de directorios \n\t(subdirs "
     "despues)\n\t-hid: incluye los ficheros ocultos\n\t-long: listado largo\n\t-acc: acesstime\n\t-link: si es "
     "enlace simbolico, el path contenido",
     FICHEROS},
    {"listrev", Cmd_listrev,
     "[-hid][-long][-link][-acc] n1 n2 ..lista recursivamente contenidos de directorios \n\t(subdirs "
     "antes)\n\t-hid: incluye los ficheros ocultos\n\t-long: listado largo\n\t-acc: acesstime\n\t-link: si es "
     "enlace simbolico, el path contenido",
     FICHEROS},
    {"setdirparams", Cmd_setdirparams,
     "[long|short][hid|nohid][lnk|nolnk][recb|reca|norec]\n\testablece parametros de los listados con "
     "dir\n\t\tlong|short:\t listado largo o corto\n\t\t hid|nohid:\t lista (o no) los ocultos\n\t\tlink|nolink:\t "
     "lista (o no) el destino de los enlaces simbolicos\n\t\trecb|reca|norec:\t si el listado es recursivo "
     "antes(recb) o despues (reca)\n",
     FICHEROS},
    {"getdirparams", Cmd_getdirparams, "\tmuestra los parametros los de listados con dir\n", FICHEROS},
    {"dir", Cmd_dir,
     "[-d]....\tLista los ficheros y directorios que se le pasa como argumento\n\tde acuerdo a lo establecido e "
     "setdirparams (long, short, hid...)\n\t-d: lista los CONTENIDOS de los directorios\n",
     FICHEROS},
    {"recurse", Cmd_recurse, "[n]\tInvoca a la funcion recursiva n veces", MEMORIA},
    {"i-o", Cmd_i_o,
     "[read|write] ......\tLee o escribe un fichero desde/hacia memoria\n\tread fich addr cont: lee cont bytes de "
     "fich en addr\n\twrite [-o] fich addr cont: escribe cont bytes desde addr en fich (-o sobreescribe)",
     MEMORIA},
    {"readfile", Cmd_readfile, "fich addr [cont]\tLee cont bytes (todo el fichero por defecto) de fich en addr",
     MEMORIA},
    {"writefile", Cmd_writefile,
     "[-o] fich addr cont\tEscribe cont bytes desde la direccion addr en fich\n\t-o: sobreescribe el fichero si "
     "existe",
     MEMORIA},
    {"memdump", Cmd_memdump, "addr [cont]\tVuelca en pantalla cont bytes (20 por defecto) desde la direccion addr",
     MEMORIA},
    {"memfill", Cmd_memfill,
     "addr [cont] [byte] [paso]\tLlena cont bytes (128 por defecto) de memoria desde addr\n\tcon byte ('A' por "
     "defecto), uno de cada paso bytes (1 por defecto)",
     MEMORIA},
    {"deallocate", Cmd_deallocate,
     "[-malloc|-shared|-delkey|-mmap|addr]..\tDesasigna un bloque de memoria\n\t-malloc tam: bloque malloc de "
     "tamano tam\n\t-shared cl: bloque de memoria compartida de clave cl\n\t-delkey cl: elimina la clave cl del "
     "sistema\n\t-mmap fich: fichero mapeado fich\n\taddr: bloque en la direccion addr",
     LISTAMEMORIA},
    {"allocate", Cmd_allocate, "[-malloc|-shared|-createshared|-mmap]... Asigna un bloque de memoria", LISTAMEMORIA},
    {"malloc", Cmd_malloc, "[-free] [tam]\tAsigna (o desasigna con -free) un bloque de tam bytes con malloc",
     LISTAMEMORIA},
    {"mmap", Cmd_mmap,
     "[-free] fich [prm]\tMapea (o desmapea con -free) el fichero fich\n\tprm: permisos del mapeo (r, w, x)",
     LISTAMEMORIA},
    {"shared", Cmd_shared,
     "[-free|-create|-delkey] cl [tam]\tAsigna memoria compartida de clave cl\n\t-create cl tam: la crea de tamano "
     "tam\n\t-free cl: la desasigna\n\t-delkey cl: elimina la clave cl del sistema",
     LISTAMEMORIA},
    {"memcreateshared", Cmd_createshared, "cl tam\tCrea un bloque de memoria compartida de clave cl y tamano tam",
     LISTAMEMORIA},
    {"memshared", Cmd_memshared, "cl\tAsigna el bloque de memoria compartida (ya existente) de clave cl",
     LISTAMEMORIA},
    {"memdeshared", Cmd_memdeshared, "cl\tDesasigna el bloque de memoria compartida de clave cl", LISTAMEMORIA},
    {"memmalloc", Cmd_memmalloc, "tam\tAsigna un bloque de memoria de tamano tam con malloc", LISTAMEMORIA},
    {"memdemalloc", Cmd_memdemalloc, "tam\tDesasigna un bloque de memoria de tamano tam asignado con malloc",
     LISTAMEMORIA},
    {"memmmap", Cmd_memmmap, "fich [prm]\tMapea el fichero fich con permisos prm (r, w, x)", LISTAMEMORIA},
    {"memdemmap", Cmd_memdemmap, "fich\tDesmapea el fichero fich", LISTAMEMORIA},
    {"free", Cmd_free, "addr\tDesasigna el bloque de memoria en la direccion addr", LISTAMEMORIA},
    {"delkey", Cmd_delkey, "cl\tElimina del sistema (sin desasignar) la clave de memoria compartida cl",
     LISTAMEMORIA},
    {"mem", Cmd_memory,
     "[-blocks|-funcs|-vars|-all|-pmap] ..\tMuestra detalles de la memoria del proceso\n\t-blocks: los bloques de "
     "memoria asignados\n\t-funcs: las direcciones de las funciones\n\t-vars: las direcciones de las "
     "variables\n\t-all: todo\n\t-pmap: muestra la salida del comando pmap(o similar)",
     LISTAMEMORIA},
    {"showenv", Cmd_showenv,
     "[-environ|-addr] \t Muestra el entorno del proceso\n\t-environ: accede usando environ (en lugar del tercer "
     "arg de main)\n\t-addr: muestra el valor y donde se almacenan environ y el 3er arg main ",
     ENTORNO},
    {"envvar", Cmd_envvar,
     "[-show|-change|-subs]... Muestra, cambia o substituye variables de entorno\n\t-show var:Muestra el valor y las "
     "direcciones de la variable de entorno var\n\t-change [-a|-e|-p] var val: Cambia el valor de var a "
     "val\n\t-subs [-a|-e] var1 var2 val: Sustituye var1 por var2 con valor val\n\t\t-a indica acceso por tercer arg "
     "de main\n\t\t-e indica acceso por environ\n\t\t-p indica acceso por putenv\n",
     ENTORNO},
    {"showvar", Cmd_showvar, "var\tMuestra el valor y las direcciones de la variable de entorno var", ENTORNO},
    {"changevar", Cmd_changevar,
     "[-a|-e|-p] var valor\tCambia el valor de una variable de entorno\n\t-a: accede por el tercer arg de "
     "main\n\t-e: accede mediante environ\n\t-p: accede mediante putenv",
     ENTORNO},
    {"subsvar", Cmd_subsvar,
     "[-a|-e] var1 var2 valor\tSustituye la variable de entorno var1\n\tcon var2=valor\n\t-a: accede por el tercer "
     "arg de main\n\t-e: accede mediante environ",
     ENTORNO},
    {"changevarWrong", Cmd_changevarWrong,
     "-a|-e|-p  -mo|-ma|-ms var valor\tCambia de manera incorrecta el valor de una variable de entorno\n\t-mo "
     "sobreescribe la variable original\n\t-ma usa una variable automatica para crear la nueva variable\n\t-ms usa "
     "una variable estatica para crear la nueva variable",
     ENTORNO},
    {"memcopy", Cmd_memcopy, "addr1 addr2 [siz]\tCopia siz bytes (100 por defecto) de addr1 a addr2",
     LISTAMEMORIA},
    {"stringcopy", Cmd_stringcopy, "addr s1 s2 ..\tCopia la cadena s1 s2 .. en la direccion addr", LISTAMEMORIA},
    {"abbrev", Cmd_abbrev, "[on|off] \thabilita o deshabilita el uso de abreviaturas de comandos", PROCESOS},
    {"where", Cmd_where, "prog\tMuestra donde se encuentra el ejecutable prog (o si es un comando interno)",
     PROCESOS},
    {"priority", Cmd_priority, "[pid] [valor]\tMuestra o cambia la prioridad del proceso pid (del shell por defecto)",
     PROCESOS},
    {"redin", Cmd_redin,
     "[-reset] fich \tRedirecciona la entrada estándar del shell a fich\n\t-reset: restaura al valor original",
     PROCESOS},
    {"redout", Cmd_redout,
     "[-reset] fich \tRedirecciona la salida estándar del shell a fich\n\t-reset: restaura al valor original",
     PROCESOS},
    {"rederr", Cmd_rederr,
     "[-reset] fich \tRedirecciona el error estándar del shell a fich\n\t-reset: restaura al valor original",
     PROCESOS},
    {"initredir", Cmd_initredir, "Inicializa estructuras para permitir redireccion", PROCESOS},
    {"clearredir", Cmd_clearredir, "Desabilita la redireccion", PROCESOS},
    {"getuid", Cmd_getuid, "\tMuestra las credenciales real y efectiva del shell", PROCESOS},
    {"setuid", Cmd_setuid, "[-l] id\tCambia la credencial efectiva del shell a id\n\t-l: id es un login", PROCESOS},
    {"uid", Cmd_uid,
     "[-get|-set] [-l] [id]\tMuestra o cambia (-set) la credencial del shell\n\t-get: muestra las credenciales\n\t-set "
     "id: cambia la credencial efectiva a id\n\t-l: id es un login",
     PROCESOS},
    {"search", Cmd_search,
     "[-add|-del|-clear|-path|+dir|-dir]..\tManipula o muestra la ruta de busqueda del shell\n\t-add dir, +dir: "
     "anade dir a la ruta\n\t-del dir, -dir: elimina dir de la ruta\n\t-clear: vacia la ruta\n\t-path: importa el "
     "PATH a la ruta",
     PROCESOS},
    {"fork", Cmd_fork, "\tEl shell hace fork y queda en espera a que su hijo termine", PROCESOS},
    {"execute", Cmd_exec,
     "VAR1 VAR2 ..prog args....[@pri]\tEjecuta, sin crear proceso, prog con argumentos\n\ten un entorno que "
     "contiene solo las variables VAR1, VAR2...",
     PROCESOS},
    {"executepri", Cmd_execpri, "prio prog args....\tEjecuta, sin crear proceso, prog con argumentos\n\tcon prioridad prio",
     PROCESOS},
    {"executeas", Cmd_execute_as,
     "prio prog args....\tEjecuta, sin crear proceso, prog con argumentos\n\tcon la credencial del usuario us",
     PROCESOS},
    {"fg", Cmd_pplano, "prog args...\tCrea un proceso que ejecuta en primer plano prog con argumentos", PROCESOS},
    {"fgpri", Cmd_pplanopri,
     "prio prog args...\tCrea un proceso que ejecuta en primer plano prog con argumentos\n\tcon la prioridad prio",
     PROCESOS},
    {"back", Cmd_splano, "prog args...\tCrea un proceso que ejecuta en segundo plano prog con argumentos",
     PROCESOS},
    {"backpri", Cmd_splanopri,
     "prio prog args...\tCrea un proceso que ejecuta en segundo plano prog con argumentos\n\tcon la prioridad prio",
     PROCESOS},
    {"fgas", Cmd_pplanoas,
     "us prog args...\tCrea un proceso que ejecuta en primer plano prog con argumentos\n\tcon la credencial del "
     "usuario us",
     PROCESOS},
    {"backas", Cmd_splanoas,
     "us prog args...\tCrea un proceso que ejecuta en segundo plano prog con argumentos\n\tcon la credencial del "
     "usuario us",
     PROCESOS},
    {"listjobs", Cmd_listjobs, "\tLista los procesos en segundo plano", PROCESOS},
    {"deljobs", Cmd_deljobs,
     "[-term][-sig][-all][-clear]\tElimina los procesos de la lista de procesos en sp\n\t-term: los "
     "terminados\n\t-sig: los terminados por senal\n\t-all: todos los terminados\n\t-clear: vacia la lista",
     PROCESOS},
    {"job", Cmd_job, "[-fg] pid\tMuestra informacion del proceso pid.\n\t-fg: lo espera (pasa a primer plano)",
     PROCESOS},
    {"pipe", Cmd_pipe, "prog1 args1 .. % prog2 args2 .. [&]\tEjecuta prog1 y prog2 comunicados por un pipe",
     PROCESOS},
    {"backpipe", Cmd_pipe,
     "prog1 args1 .. % prog2 args2 ..\tEjecuta en segundo plano prog1 y prog2 comunicados por un pipe", PROCESOS},
    {"sigdefault", Cmd_sigdefault, "[S1 S2 ..]\tPone la accion por defecto para las senales S1, S2...", SENALES},
    {"sigignore", Cmd_sigignore, "[S1 S2 ..]\tIgnora las senales S1, S2...", SENALES},
    {"sigmask", Cmd_sigmask, "[S1 S2 ..]\tEnmascara (bloquea) las senales S1, S2...", SENALES},
    {"sigunmask", Cmd_sigunmask, "[S1 S2 ..]\tDesenmascara (desbloquea) las senales S1, S2...", SENALES},
    {"sighandler", Cmd_sighandler,
     "[-show][-resend][-sleepNN][-Fonstack][-Frestart][-Fnodefer][-resethand][-maskSEN].. S1 S2 ..\tInstala el "
     "manejador para las senales S1, S2...\n\t-show: informa de cada senal recibida\n\t-resend: reenvia la senal "
     "al propio proceso\n\t-sleepNN: duerme NN segundos en el manejador\n\t-Fonstack: SA_ONSTACK\n\t-Frestart: "
     "SA_RESTART\n\t-Fnodefer: SA_NODEFER\n\t-resethand: SA_RESETHAND\n\t-maskSEN: enmascara SEN durante el "
     "manejador",
     SENALES},
    {"sigaction", Cmd_sigaction,
     "[-dfl|-ign|-hand] [S1 S2 ..]\tMuestra o cambia la accion asociada a las senales\n\t-dfl: accion por "
     "defecto\n\t-ign: ignorar\n\t-hand: instala el manejador (como sighandler)",
     SENALES},
    {"sigprocmask", Cmd_sigprocmask,
     "[-block|-unblock|-setmask] S1 S2 ..\tCambia la mascara de senales del proceso\n\t-block: bloquea las "
     "senales\n\t-unblock: desbloquea las senales\n\t-setmask: establece la mascara",
     SENALES},
    {"limitresend", Cmd_limitresend, "[off|N]\tLimita (a N) los reenvios de senales del manejador", SENALES},
    {"siginfo", Cmd_siginfo, "[S1 S2 ..]\tMuestra informacion sobre las senales S1, S2... (o todas)", SENALES},
    {"sigcount", Cmd_sigcount,
     "[-zero] [S1 S2 ..]\tMuestra el numero de veces que se han recibido las senales\n\t-zero: pone los contadores "
     "a cero",
     SENALES},
    {"sigaltstack", Cmd_sigaltstack,
     "[tam] [dir]\tMuestra o establece la pila alternativa de senales\n\tde tamano tam en la direccion dir",
     SENALES},
    {"loop", Cmd_bucle,
     "[-user|-sys|-mix|-dly]\tEjecuta un bucle infinito (termina con SIGINT)\n\t-user: en modo usuario\n\t-sys: "
     "en modo sistema\n\t-mix: mixto\n\t-dly: con retardo",
     SENALES},
    {"segmentation", Cmd_segmentation, "\tProduce un fallo de segmentacion (SIGSEGV)", SENALES},
    {"fpe", Cmd_fpe, "\tProduce una division por 0 (SIGFPE)", SENALES},
    {"usesignals", Cmd_usesignals,
     "[on|off]\tPrepara (o no) al shell para el uso de senales\n\t(si la lectura de teclado da error no termina)",
     SENALES},
    {"protectsegv", Cmd_protectsegv,
     "\tProtege de SIGSEGV: el shell vuelve al principio de main UNA VEZ", SENALES},
    {"protectfpe", Cmd_protectfpe, "\tProtege de SIGFPE: el shell vuelve al principio de main UNA VEZ", SENALES},
    {"assign", Cmd_assign,
     "[-add|-del|-clear] nombre addr\tAsigna (o elimina) la etiqueta nombre a la direccion addr\n\t-add nombre addr: "
     "anade la etiqueta\n\t-del nombre: elimina la etiqueta\n\t-clear: elimina todas las etiquetas",
     SFMEMORIA},
    {"memfs", Cmd_memfs,
     "[-format|-list|-search|-label|-copy|-move|-delete] ....\tSistema de ficheros en memoria\n\t-format id_mem: "
     "formatea\n\t-list idSF: lista\n\t-search: busca sistemas de ficheros\n\t-label: muestra las "
     "etiquetas\n\t-copy id1 id2: copia\n\t-move id1 id2: mueve\n\t-delete id: borra",
     SFMEMORIA},
    {"memfs-list", MemFSListar, "idSF\tLista el sistema de ficheros en memoria idSF", SFMEMORIA},
    {"memfs-format", MemFSFormat, "id_mem\tFormatea el bloque de memoria id_mem como sistema de ficheros",
     SFMEMORIA},
    {"memfs-cp", MemFSCopiar, "id1 id2\tCopia el fichero id1 en id2 (idSF:nombre o fichero de disco)", SFMEMORIA},
    {"memfs-mv", MemFSMover, "id1 id2\tMueve el fichero id1 a id2 (idSF:nombre o fichero de disco)", SFMEMORIA},
    {"memfs-del", MemFSBorrar, "idSF:nombre\tBorra el fichero nombre del sistema de ficheros idSF", SFMEMORIA},
    {"memfs-find", MemFSBuscar, "\tBusca sistemas de ficheros validos en los bloques asignados", SFMEMORIA},
    {"memfs-label", Cmd_printAssign, "\tMuestra las etiquetas", SFMEMORIA},
    {"checkalias", Cmd_checkalias,
     "[-q] Lista los comandos con sus alias\n\t\tLista los comandos que no tienen alias", 0},
    {"override", Cmd_override,
     "[on|off] habilita o deshabilita los comandos que no son de las practicas\n\ton: los habilita\n\toff: los "
     "deshabilita",
     0},
    {"checkvalid", Cmd_checkvalid,
     "\tcomprueba que los comandos validos existen.\n\t\t[-v]Imprime los que no existen", 0},
    {nullptr, nullptr, nullptr, 0},
};
static_assert(std::size(C) == 130);

constexpr EntradaAlias alias[] = {
    {"version", "numserie"},
    {"exit", "salir"},
    {"exit", "bye"},
    {"exit", "fin"},
    {"exit", "quit"},
    {"exit", "salir"},
    {"date", "fecha"},
    {"day", "dia"},
    {"time", "hora"},
    {"time", "hour"},
    {"pid", "getpid"},
    {"ppid", "getppid"},
    {"authors", "autores"},
    {"systemd", "sistemd"},
    {"historic", "previous"},
    {"command", "cmd"},
    {"command", "comando"},
    {"prompt", "aviso"},
    {"sysinfo", "infosis"},
    {"help", "ayuda"},
    {"limits", "limites"},
    {"chdir", "cd"},
    {"chdir", "carpeta"},
    {"chroot", "changeroot"},
    {"chroot", "caambiarraiz"},
    {"pwd", "cwd"},
    {"pwd", "getcwd"},
    {"open", "abrir"},
    {"close", "cerrar"},
    {"listopen", "listarabiertos"},
    {"dup", "duplicar"},
    {"dup2", "duplicar2"},
    {"read", "sysread"},
    {"read", "leer"},
    {"write", "syswrite"},
    {"write", "escribir"},
    {"lseek", "posfile"},
    {"lseek", "posicion"},
    {"readstr", "readstring"},
    {"readstr", "leercad"},
    {"writestr", "escribircad"},
    {"writestr", "writestring"},
    {"hardlink", "enlacereal"},
    {"symlink", "enlacesym"},
    {"link", "lnk"},
    {"link", "enlace"},
    {"create", "crear"},
    {"makefile", "crearfich"},
    {"makedir", "creardir"},
    {"delete", "borrar"},
    {"delete", "erase"},
    {"deltree", "borrarrec"},
    {"deltree", "delrec"},
    {"stat", "listfich"},
    {"stat", "listfile"},
    {"list", "listar"},
    {"list", "showdir"},
    {"listdir", "listfolder"},
    {"listrec", "reclist"},
    {"listrev", "revlist"},
    {"setdirparams", "opcionesficheros"},
    {"getdirparams", "veropcionesficheros"},
    {"dir", "ficheros"},
    {"recurse", "recursiva"},
    {"i-o", "e-s"},
    {"i-o", "i/o"},
    {"i-o", "e/s"},
    {"readfile", "leerfichero"},
    {"writefile", "escribirfichero"},
    {"memdump", "dumpmem"},
    {"memdump", "volcarmem"},
    {"memfill", "fillmem"},
    {"memfill", "llenarmem"},
    {"deallocate", "dealloc"},
    {"deallocate", "desasignar"},
    {"allocate", "alloc"},
    {"allocate", "asignar"},
    {"malloc", "Mmalloc"},
    {"mmap", "Mmmap"},
    {"shared", "Mshared"},
    {"memcreateshared", "createshared"},
    {"memshared", "mshared"},
    {"memdeshared", "dememshared"},
    {"memmalloc", "mmalloc"},
    {"memdemalloc", "dememmalloc"},
    {"memmmap", "mmmap"},
    {"memdemmap", "dememmmap"},
    {"free", "liberar"},
    {"delkey", "borrarclave"},
    {"mem", "memory"},
    {"mem", "memoria"},
    {"showenv", "entorno"},
    {"showenv", "environ"},
    {"envvar", "varentorno"},
    {"showvar", "mostrarvar"},
    {"changevar", "cambiarvar"},
    {"subsvar", "susvar"},
    {"subsvar", "substitutevar"},
    {"subsvar", "sustituirvar"},
    {"changevarWrong", "cambiarvarMal"},
    {"memcopy", "copiarmem"},
    {"stringcopy", "strcopy"},
    {"stringcopy", "copiarstring"},
    {"stringcopy", "memstr"},
    {"abbrev", "abreviaturas"},
    {"where", "donde"},
    {"where", "cual"},
    {"priority", "prioridad"},
    {"priority", "prio"},
    {"redin", "redentrada"},
    {"redout", "redsalida"},
    {"rederr", "rederror"},
    {"initredir", "habilitarredireccion"},
    {"clearredir", "deshabilitarredireccion"},
    {"getuid", "getuseruid"},
    {"setuid", "setuseruid"},
    {"uid", "credenciales"},
    {"search", "path"},
    {"fork", "crearproceso"},
    {"execute", "ejec"},
    {"execute", "exec"},
    {"executepri", "ejecpri"},
    {"executepri", "execpri"},
    {"executeas", "ejecas"},
    {"executeas", "execas"},
    {"fg", "pplano"},
    {"fgpri", "pplanopri"},
    {"back", "splano"},
    {"backpri", "splanopri"},
    {"fgas", "pplanoas"},
    {"backas", "splanoas"},
    {"listjobs", "jobs"},
    {"listjobs", "listarprocs"},
    {"deljobs", "borrarprocs"},
    {"job", "proc"},
    {"pipe", "concatenar"},
    {"backpipe", "concatenarsp"},
    {"sigdefault", "defecto"},
    {"sigignore", "ignorar"},
    {"sigmask", "enmascarar"},
    {"sigunmask", "desenmascarar"},
    {"sighandler", "manejador"},
    {"sigaction", "signal"},
    {"sigaction", "senal"},
    {"sigprocmask", "sigprocmask"},
    {"limitresend", "limitereenvios"},
    {"siginfo", "infosenales"},
    {"sigcount", "contadorsenales"},
    {"sigaltstack", "pilasenales"},
    {"loop", "bucle"},
    {"segmentation", "segv"},
    {"fpe", "divby0"},
    {"usesignals", "usarsenales"},
    {"protectsegv", "protegersegmentation"},
    {"protectfpe", "protegerfpe"},
    {"assign", "label"},
    {"memfs", "sfmemoria"},
    {"memfs-list", "mfslist"},
    {"memfs-format", "format"},
    {"memfs-cp", "copy"},
    {"memfs-mv", "move"},
    {"memfs-del", "remove"},
    {"memfs-find", "mfsfind"},
    {"memfs-label", "showlabels"},
    {nullptr, nullptr},
};
static_assert(std::size(alias) == 165);

int HabilitarAbrev = 0;

bool Igual(const char *a, const char *b) { return strcmp(a, b) == 0; }

// The alias table never changes, and every line is resolved through it: two
// indexes of its rows, sorted by the compiler, find a word by halving. They
// hold row numbers, not pointers, so that they need no relocation and stay in
// read-only memory: start-up neither builds nor writes anything for them.
constexpr size_t FILASALIAS = std::size(alias) - 1;
static_assert(FILASALIAS <= UINT8_MAX);
using IndiceAlias = std::array<uint8_t, FILASALIAS>;

constexpr std::string_view Clave(size_t fila, bool porAlias) {
    return porAlias ? alias[fila].alias : alias[fila].comando;
}

// Sorted by one column; the sort is stable, so among rows of the same word
// the first comes first, as a scan from the top finds it.
constexpr IndiceAlias Ordenar(bool porAlias) {
    IndiceAlias v{};
    for (size_t i = 0; i < v.size(); i++) {
        size_t j = i;
        for (; j > 0 && Clave(i, porAlias) < Clave(v[j - 1], porAlias); j--) v[j] = v[j - 1];
        v[j] = static_cast<uint8_t>(i);
    }
    return v;
}

constexpr IndiceAlias PorAlias = Ordenar(true);
constexpr IndiceAlias PorComando = Ordenar(false);  // the commands that have an alias

// The first row whose column holds the word, or null. The words are compared
// as C strings: no length is measured on the way.
const EntradaAlias *Buscar(const IndiceAlias &indice, bool porAlias, const char *palabra) {
    auto columna = [porAlias](uint8_t fila) { return porAlias ? alias[fila].alias : alias[fila].comando; };
    auto it = std::lower_bound(indice.begin(), indice.end(), palabra,
                               [&](uint8_t fila, const char *p) { return strcmp(columna(fila), p) < 0; });
    return it != indice.end() && strcmp(columna(*it), palabra) == 0 ? &alias[*it] : nullptr;
}

// The command table, likewise indexed by name: the row a scan from the top
// would reach first.
constexpr size_t FILASCOMANDOS = std::size(C) - 1;
static_assert(FILASCOMANDOS <= UINT8_MAX);

constexpr std::array<uint8_t, FILASCOMANDOS> OrdenarComandos() {
    std::array<uint8_t, FILASCOMANDOS> v{};
    for (size_t i = 0; i < v.size(); i++) {
        size_t j = i;
        for (; j > 0 && std::string_view(C[i].nombre) < std::string_view(C[v[j - 1]].nombre); j--) v[j] = v[j - 1];
        v[j] = static_cast<uint8_t>(i);
    }
    return v;
}

constexpr std::array<uint8_t, FILASCOMANDOS> PorNombre = OrdenarComandos();

}  // namespace

const EntradaComando *TablaComandos() { return C; }

const EntradaComando *BuscarComando(const char *nombre) {
    auto it = std::lower_bound(PorNombre.begin(), PorNombre.end(), nombre,
                               [](uint8_t fila, const char *p) { return strcmp(C[fila].nombre, p) < 0; });
    return it != PorNombre.end() && strcmp(C[*it].nombre, nombre) == 0 ? &C[*it] : nullptr;
}
const EntradaAlias *TablaAlias() { return alias; }

const char *RealCommandNoAbrev(const char *cmd) {
    if (!OverRide(nullptr) && !IsValidCommand(cmd)) return cmd;
    const EntradaAlias *e = Buscar(PorAlias, true, cmd);
    return e == nullptr ? cmd : e->comando;
}

int IsInternalCommand(const char *cmd) { return Buscar(PorComando, false, cmd) != nullptr; }

const char *RealCommandAbrev(const char *cmd) {
    size_t n = strlen(cmd);
    const EntradaAlias *encontrada = nullptr;
    for (const EntradaAlias *a = alias; a->comando != nullptr; a++) {
        if (strncmp(cmd, a->comando, n) == 0 || strncmp(cmd, a->alias, n) == 0) {
            if (encontrada != nullptr) return nullptr;  // not unique, even within one command
            encontrada = a;
        }
    }
    return encontrada != nullptr ? encontrada->comando : cmd;
}

const char *RealCommand(const char *cmd) {
    const char *r = RealCommandNoAbrev(cmd);
    if (IsInternalCommand(r)) return r;
    if (HabilitarAbrev) return RealCommandAbrev(cmd);
    return r;
}

int IsCmdOrAlias(const char *cmd) { return IsInternalCommand(cmd) || Buscar(PorAlias, true, cmd) != nullptr; }

void HabilitarAbreviaturas() { HabilitarAbrev = 1; }
void DeshabilitarAbreviaturas() { HabilitarAbrev = 0; }
int EstadoAbreviaturas() { return HabilitarAbrev; }

unsigned PrintGetAlias(const char *cmd, int imprimir) {
    unsigned total = 0;
    for (const EntradaAlias *a = alias; a->comando != nullptr; a++) {
        if (!Igual(a->comando, cmd)) continue;
        total += strlen(a->alias) + 1;
        if (imprimir) printf("%s ", a->alias);
    }
    return total;
}

unsigned GetAliasesLength(const char *cmd) { return PrintGetAlias(cmd, 0); }
unsigned PrintAlias(const char *cmd) { return PrintGetAlias(cmd, 1); }

void Cmd_abbrev(char *tr[]) {
    if (tr[0] != nullptr && Igual(tr[0], "on"))
        HabilitarAbreviaturas();
    else if (tr[0] != nullptr && Igual(tr[0], "off"))
        DeshabilitarAbreviaturas();
    else
        printf("Uso de abreviaturas de comandos esta %s\n", HabilitarAbrev ? "habilitado" : "deshabilitado");
}

void Cmd_checkalias(char *tr[]) {
    if (tr[0] == nullptr) {
        for (const EntradaComando *c = C; c->nombre != nullptr; c++) {
            printf("\n***%s: ", c->nombre);
            PrintAlias(c->nombre);
        }
        printf("\n");
    } else if (Igual(tr[0], "-q")) {
        for (const EntradaComando *c = C; c->nombre != nullptr; c++)
            if (GetAliasesLength(c->nombre) == 0) printf("%s ", c->nombre);
        printf("\n");
    } else {
        printf("\n");
    }
}
