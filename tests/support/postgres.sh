# To be sourced: where PostgreSQL's programs are, and as whom they are run.

programs=$(printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -n 1)
[[ -x $programs/initdb ]] || { echo "no initdb below /usr/lib/postgresql: install the package postgresql" && exit 1; }

# The server refuses to run as root: then it is run as the user that its package has made. It ends with who started it.
as=(setpriv --pdeathsig QUIT)
[[ $(id -u) != 0 ]] || as+=(--reuid postgres --regid postgres --clear-groups)

# own DIRECTORY: makes it one that the server may use.
own() { [[ $(id -u) != 0 ]] || chown postgres "$1"; }
