#!/bin/sh
# The packet filter's rules as the appliance ships them, and the head of every script that the daemon makes of them:
# it copies this file, appends its own lines, which use ${IPTABLES}, and runs the copy.
#
# xas_iptables.sh resetAll|resetInput|resetNone: what is cleared before the appended lines run.

IPTABLES=/bin/iptables
XTABLES_LIBDIR=${XTABLES_LIBDIR:-/libexec/xtables}
export XTABLES_LIBDIR

case $1 in
resetAll)
    ${IPTABLES} -F
    ${IPTABLES} -X
    ;;
resetInput)
    ${IPTABLES} -F INPUT
    ;;
resetNone) ;;
*)
    echo "usage: $0 resetAll|resetInput|resetNone" >&2
    exit 1
    ;;
esac
