# Completion of quillory's options for fish.
complete -c quillory -f
complete -c quillory -l toggle -d 'Show the reader, or send it away'
complete -c quillory -l settings -d 'Open the settings'
complete -c quillory -l background -d 'Start without a window'
complete -c quillory -l connect -x -a '(__fish_complete_directories)' -d 'Connect this folder of sheets'
complete -c quillory -l connect-if-none -x -a '(__fish_complete_directories)' -d 'Connect this folder where none is connected'
complete -c quillory -l gesture -x -a 'shift option off' -d 'Peek by tapping this key twice and holding it'
complete -c quillory -l initial-shortcuts -d 'Store Ctrl+Alt+K and Ctrl+Alt+J where no shortcuts are stored'
complete -c quillory -s h -l help -d 'List the options'
complete -c quillory -l help-all -d 'List the options, with those of the toolkit'
complete -c quillory -s v -l version -d 'Tell the version'
