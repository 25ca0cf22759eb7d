# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# Completions of quillane for fish; share/fish/vendor_completions.d.

complete -c quillane -f
complete -c quillane -n __fish_is_first_token -a status -d 'say what the agent does'
complete -c quillane -n __fish_is_first_token -a doctor -d 'say what works, and what to do about the rest'
complete -c quillane -n __fish_is_first_token -a share -d 'upload a file and show its download link'
complete -c quillane -n __fish_is_first_token -a history -d 'open the clipboard history, or close it'
complete -c quillane -n __fish_is_first_token -a capture -d 'select an area of the screen and copy its picture'
complete -c quillane -n __fish_is_first_token -a pause -d 'pause everything'
complete -c quillane -n __fish_is_first_token -a resume -d 'go on after a pause'
complete -c quillane -n __fish_is_first_token -a quit -d 'end the agent'
complete -c quillane -n __fish_is_first_token -l at-login -d 'start the agent as a session does at login'
complete -c quillane -n __fish_is_first_token -l help -s h -d 'show this text'
complete -c quillane -n __fish_is_first_token -l version -d 'show the version'
complete -c quillane -n 'test (count (commandline -opc)) -eq 2; and __fish_seen_subcommand_from status doctor' -l json
complete -c quillane -n 'test (count (commandline -opc)) -eq 2; and __fish_seen_subcommand_from share' -F
