#!/usr/bin/env bash
# one_node_slurm.sh start|stop FOLDER: a Slurm cluster of this machine alone, run as root without any
# service; its configuration, keys, state and logs are in FOLDER, an absolute path without blanks. Jobs find
# it with SLURM_CONF=FOLDER/slurm.conf, and what became of them is in FOLDER/jobcomp.txt.
set -euo pipefail
command=$1
folder=$2
export SLURM_CONF=$folder/slurm.conf
export PATH=/usr/sbin:$PATH

wait_for() { # SECONDS COMMAND...
    local end=$((SECONDS + $1))
    until "${@:2}"; do
        [ "$SECONDS" -lt "$end" ] || return 1
        sleep 0.2
    done
}

is_up() {
    [[ $(timeout 5 sinfo -h -o %t 2>/dev/null) =~ ^(idle|mix|alloc)$ ]]
}

# Each of the cluster's processes holds its log open.
processes() {
    find /proc/[0-9]*/fd -lname "$folder/*.log" 2>/dev/null | cut -d/ -f3 | sort -u
}

are_gone() {
    [ -z "$(processes)" ]
}

write_configuration() {
    local port=$((20000 + $$ % 10000)) # of this cluster alone
    cat >"$SLURM_CONF" <<END
ClusterName=onenode
SlurmctldHost=$(hostname -s)(127.0.0.1)
NodeName=$(hostname -s) NodeAddr=127.0.0.1 CPUs=2 RealMemory=4000
PartitionName=main Nodes=ALL Default=YES MaxTime=INFINITE
SlurmUser=root
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
SlurmctldPort=$port
SlurmdPort=$((port + 1))
AuthType=auth/munge
AuthInfo=socket=$folder/munge.socket
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
ProctrackType=proctrack/pgid
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
JobCompType=jobcomp/filetxt
JobCompLoc=$folder/jobcomp.txt
KillWait=3
MailProg=/bin/true
SchedulerParameters=batch_sched_delay=0
SlurmdParameters=config_overrides
ReturnToService=2
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
SlurmctldLogFile=$folder/slurmctld.log
SlurmdLogFile=$folder/slurmd.log
END
}

start() {
    umask 022
    mkdir -p "$folder"/{state,spool}
    (umask 077 && head -c 128 /dev/urandom >"$folder/munge.key")
    write_configuration
    # No daemon keeps the caller's output open.
    if ! { munged --force --socket="$folder/munge.socket" --key-file="$folder/munge.key" \
        --pid-file="$folder/munged.pid" --seed-file="$folder/munged.seed" \
        --log-file="$folder/munged.log" && slurmctld && slurmd &&
        wait_for 60 is_up; } </dev/null >"$folder/start.log" 2>&1; then
        tail -n 20 "$folder"/*.log >&2
        stop
        exit 1
    fi
}

stop() {
    processes | xargs -r kill 2>/dev/null || true
    wait_for 10 are_gone || processes | xargs -r kill -KILL
}

"$command"
